#include "core/espera.h"
#include "platform/unit/KVsocket.h"
#include "platform/unit/leitorHttp.h"
#include "platform/unit/texto.h"
#include "tests/apoio/instalacao.h"
#include "tests/unidadesDeTeste.h"

using simulador::Defeito;
using simulador::Defeitos;
using Causa = KVsocket::Causa;
using Ponto = LeitorHttp::Ponto;
Q_DECLARE_METATYPE(KVsocket::Causa)
Q_DECLARE_METATYPE(LeitorHttp::Ponto)

class tst_unidades_http : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma); }
    void cleanup() { m_instalacao.reset(); }

    void leitorHttp_data() {
        // ponto: after the other side has closed
        const Tabela<QByteArray, Ponto, QByteArray> caso("bytes", "ponto", "corpo");
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const QByteArray pedacos = ok + "Transfer-Encoding: chunked\r\n\r\n";
        const QByteArray nada;
        caso("until the end", ok + "\r\nabc", Ponto::Fim, "abc");
        caso("bare line ends", "HTTP/1.0 200 OK\nContent-length:3\n\nabc", Ponto::Fim, "abc");
        caso("interim answer", "HTTP/1.1 100 Continue\r\n\r\n" + ok + "Content-Length: 1\r\n\r\nz", Ponto::Fim, "z");
        caso("chunks, extension, trailer", pedacos + "3;a=b\r\nabc\r\n0A\r\n0123456789\r\n0\r\nX: y\r\n\r\n",
             Ponto::Fim, "abc0123456789");
        caso("announced more", ok + "Content-Length: 4\r\n\r\nabc", Ponto::Cortada, "abc");
        caso("announced less", ok + "Content-Length: 2\r\n\r\nabc", Ponto::Excedente, "ab");
        caso("two lengths", ok + "Content-Length: 3\r\nContent-Length: 4\r\n\r\nabc", Ponto::Malformada, nada);
        caso("length over the limit", ok + "Content-Length: 101\r\n\r\n", Ponto::Grande, nada);
        caso("chunk over the limit", pedacos + "65\r\n", Ponto::Grande, nada);
        caso("huge chunk size", pedacos + "FFFFFFFFFFFFFFFF\r\n", Ponto::Malformada, nada);
        caso("negative chunk size", pedacos + "-3\r\nabc\r\n", Ponto::Malformada, nada);
        caso("chunk longer than told", pedacos + "2\r\nabc\r\n", Ponto::Malformada, "ab");
        caso("chunks cut", pedacos + "3\r\nabc\r\n", Ponto::Cortada, "abc");
        caso("both measures", ok + "Content-Length: 3\r\nTransfer-Encoding: chunked\r\n\r\n", Ponto::Malformada, nada);
        caso("unknown coding", ok + "Transfer-Encoding: gzip\r\n\r\nabc", Ponto::Malformada, nada);
        caso("no status", "HTTP/1.1 OK\r\n\r\n", Ponto::Malformada, nada);
        caso("field without name", ok + ": x\r\n\r\n", Ponto::Malformada, nada);
        caso("head without end", ok + "X: " + QByteArray(20000, 'a'), Ponto::Malformada, nada);
        caso("fields without end", ok + QByteArray("Abcdefg: 1234567890123456789\r\n").repeated(800), Ponto::Malformada,
             nada);
        caso("another protocol", "SSH-2.0", Ponto::Malformada, nada);
    }
    void leitorHttp() {
        QFETCH(QByteArray, bytes);
        for (const qsizetype passo : {qsizetype(1), qsizetype(7), std::max<qsizetype>(1, bytes.size())}) {
            LeitorHttp leitor(100);
            for (qsizetype i = 0; i < bytes.size() && !leitor.terminado(); i += passo)
                leitor.alimentar(QByteArrayView(bytes).sliced(i, std::min(passo, bytes.size() - i)));
            // An end that comes byte by byte is reached before the byte behind it.
            if (leitor.ponto() == Ponto::Fim && leitor.corpo().size() == 2)
                leitor.alimentar("c");
            leitor.fechado();
            QTEST(leitor.ponto(), "ponto");
            QTEST(leitor.corpo(), "corpo");
        }
    }

    void codificacoes_data() {
        // texto: null: refused; both behind a declaration of an encoding, if any
        const Tabela<QByteArray, QByteArray, QByteArray, QString> caso("declarada", "bytes", "tipo", "texto");
        caso("declared", "windows-1252", "\xE7\x80", {}, u"ç€"_s);
        caso("declared beats transport", "UTF-8", "ç€", "text/xml; charset=ISO-8859-1", u"ç€"_s);
        caso("transport", {}, "\xE7", QByteArray("text/xml; Charset=\"iso-8859-1\""), u"ç"_s);
        caso("mark", {}, QByteArray("\xFF\xFE\xE7\x00\xAC\x20", 6), "a; charset=utf-8", u"ç€"_s);
        caso("mark left out", {}, "\xEF\xBB\xBFç", {}, u"ç"_s);
        caso("not what it says", "UTF-8", "\xE7 ", {}, {});
        caso("byte outside the encoding", "US-ASCII", "a\xE7z", {}, {});
        caso("unknown encoding", "klingon-1", "a", {}, {});
        caso("zero bytes", {}, QByteArray("a\0b", 3), {}, {});
    }
    void codificacoes() {
        QFETCH(QByteArray, declarada);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, tipo);
        QFETCH(QString, texto);
        if (!declarada.isEmpty())
            declarada = "<?xml version=\"1.0\" encoding='" + declarada + "'?>";
        QCOMPARE(descodificarDocumento(declarada + bytes, tipo).value_or(QString()),
                 texto.isNull() ? QString() : QString::fromLatin1(declarada) + texto);
    }

    void documento_data() {
        const Tabela<Defeitos, Causa> caso("defeitos", "causa");
        caso("good", {}, Causa::Nenhuma);
        caso("windows-1252", {Defeito::XmlLatino}, Causa::Nenhuma);
        caso("late, but in time", {Defeito::Lento}, Causa::Nenhuma);
        caso("silent", {Defeito::Silencioso}, Causa::Tempo);
        caso("drips", {Defeito::WebGota}, Causa::Tempo);
        caso("reset", {Defeito::WebCorta}, Causa::Interrompida);
        caso("no end", {Defeito::WebInfinito}, Causa::Grande);
        caso("50 MB", {Defeito::Xml50Mb}, Causa::Grande);
        caso("status 500", {Defeito::WebEstado}, Causa::Estado);
        caso("redirection", {Defeito::WebReencaminha}, Causa::Redireccionada);
        caso("announces less", {Defeito::TamanhoMenor}, Causa::Excedente);
        caso("empty", {Defeito::XmlVazio}, Causa::Vazia);
        caso("wrong encoding", {Defeito::XmlCodificacao}, Causa::Codificacao);
    }
    void documento() {
        QFETCH(Defeitos, defeitos);
        QFETCH(Causa, causa);
        simulador::Definicao d = definicao(defeitos);
        d.nome = u"Câmara 1"_s;
        const auto unidade = ligarUnidade(d);
        const auto http = novoKVsocket();
        const QString texto = http->GET(u"http://127.0.0.2/setup.xml"_s, 400, unidade->portaWeb());
        QCOMPARE(http->causa(), causa);
        QCOMPARE(http->erro().isEmpty(), causa == Causa::Nenhuma);
        QVERIFY(causa == Causa::Nenhuma ? texto.contains(u"<DeviceName>Câmara 1</DeviceName>"_s) : texto.isEmpty());
        QCOMPARE(http->corpo().isEmpty(), causa != Causa::Nenhuma);
        QCOMPARE(unidade->pedidosWeb(), defeitos.tem(Defeito::Silencioso) ? 0 : 1); // asked once, never again
        // The object is as good as new.
        unidade->definirDefeitos({});
        QVERIFY(!http->ocupado());
        QVERIFY(http->GET(u"http://127.0.0.2/setup.xml"_s, 2000, unidade->portaWeb()).contains(u"</Root>"_s));
    }

    void documentoSemQuemResponda() {
        const auto http = novoKVsocket();
        const std::tuple<QString, quint16, Causa> casos[] = {
            {u"http://127.0.0.7/setup.xml"_s, portaLivre(), Causa::Recusada},
            {u"ftp://127.0.0.7/setup.xml"_s, 80, Causa::Endereco},
            {u"http:///setup.xml"_s, 80, Causa::Endereco},
            {u"http://127.0.0.7 x/"_s, 80, Causa::Endereco},
            {u"http://127.0.0.7/"_s, 0, Causa::Endereco}};
        for (const auto &[url, porta, causa] : casos) {
            QVERIFY(http->GET(url, 500, porta).isEmpty());
            QVERIFY2(http->causa() == causa, qPrintable(url));
        }
        QTcpServer mudo; // takes the connection and closes it without a byte
        QVERIFY(mudo.listen(QHostAddress(u"127.0.0.7"_s)));
        connect(&mudo, &QTcpServer::newConnection, &mudo, [&] { mudo.nextPendingConnection()->disconnectFromHost(); });
        http->GET(u"http://127.0.0.7/"_s, 500, mudo.serverPort());
        QCOMPARE(http->causa(), Causa::SemResposta);
    }

    void documentoDeixaCorrerEventos() {
        const auto unidade = ligarUnidade({Defeito::Silencioso});
        const auto http = novoKVsocket();
        Causa doSegundo = Causa::Nenhuma; // asked meanwhile
        QTimer::singleShot(50, http.get(), [&] {
            QVERIFY(http->ocupado() && http->GET(u"http://127.0.0.2/"_s, 100, unidade->portaWeb()).isEmpty());
            doSegundo = http->causa();
        });
        http->GET(u"http://127.0.0.2/setup.xml"_s, 300, unidade->portaWeb());
        QCOMPARE(http->causa(), Causa::Tempo);
        QCOMPARE(doSegundo, Causa::Ocupado);
    }

    void pausa() {
        QElapsedTimer relogio;
        relogio.start();
        espera::pausar(this, 80);
        QVERIFY(relogio.elapsed() >= 80);
        auto dono = std::make_unique<QObject>();
        QTimer::singleShot(30, this, [&] { dono.reset(); });
        QVERIFY_THROWS_EXCEPTION(Interrompido, espera::pausar(dono.get(), 30000));
    }

private:
    std::unique_ptr<Instalacao> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_unidades_http)
#include "tst_unidades_http.moc"
