#include "core/falha.h"
#include "platform/unit/KVsocket.h"
#include "platform/unit/espera.h"
#include "platform/unit/leitorHttp.h"
#include "platform/unit/texto.h"
#include "tests/apoio/instalacao.h"
#include "tests/unidadesDeTeste.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>

using simulador::Defeito;
using simulador::Defeitos;
using Causa = KVsocket::Causa;
using Ponto = LeitorHttp::Ponto;
Q_DECLARE_METATYPE(simulador::Defeitos)
Q_DECLARE_METATYPE(KVsocket::Causa)
Q_DECLARE_METATYPE(LeitorHttp::Ponto)

class tst_unidades_http : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma); }
    void cleanup() { m_instalacao.reset(); }
    void leitorHttp_data();
    void leitorHttp();
    void codificacoes_data();
    void codificacoes();
    void documento_data();
    void documento();
    void documentoSemQuemResponda();
    void documentoDeixaCorrerEventos();
    void objectoDestruidoDuranteOPedido();

private:
    std::unique_ptr<Instalacao> m_instalacao;
};

void tst_unidades_http::leitorHttp_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Ponto>("ponto"); // after the other side has closed
    QTest::addColumn<QByteArray>("corpo");
    const QByteArray ok = "HTTP/1.1 200 OK\r\n";
    const QByteArray pedacos = ok + "Transfer-Encoding: chunked\r\n\r\n";
    const QByteArray nada;
    QTest::newRow("length") << QByteArray(ok + "Content-Length: 3\r\n\r\nabc") << Ponto::Fim << QByteArray("abc");
    QTest::newRow("until the end") << QByteArray(ok + "\r\nabc") << Ponto::Fim << QByteArray("abc");
    QTest::newRow("bare line ends") << QByteArray("HTTP/1.0 200 OK\nContent-length:3\n\nabc") << Ponto::Fim
                                    << QByteArray("abc");
    QTest::newRow("interim answer") << QByteArray("HTTP/1.1 100 Continue\r\n\r\n" + ok + "Content-Length: 1\r\n\r\nz")
                                    << Ponto::Fim << QByteArray("z");
    QTest::newRow("chunks, extension, trailer")
        << QByteArray(pedacos + "3;a=b\r\nabc\r\n0A\r\n0123456789\r\n0\r\nX: y\r\n\r\n") << Ponto::Fim
        << QByteArray("abc0123456789");
    QTest::newRow("announced more") << QByteArray(ok + "Content-Length: 4\r\n\r\nabc") << Ponto::Cortada
                                    << QByteArray("abc");
    QTest::newRow("announced less") << QByteArray(ok + "Content-Length: 2\r\n\r\nabc") << Ponto::Excedente
                                    << QByteArray("ab");
    QTest::newRow("two lengths") << QByteArray(ok + "Content-Length: 3\r\nContent-Length: 4\r\n\r\nabc")
                                 << Ponto::Malformada << nada;
    QTest::newRow("negative length") << QByteArray(ok + "Content-Length: -3\r\n\r\nabc") << Ponto::Malformada << nada;
    QTest::newRow("length over the limit") << QByteArray(ok + "Content-Length: 101\r\n\r\n") << Ponto::Grande << nada;
    QTest::newRow("chunk over the limit") << QByteArray(pedacos + "65\r\n") << Ponto::Grande << nada;
    QTest::newRow("huge chunk size") << QByteArray(pedacos + "FFFFFFFFFFFFFFFF\r\n") << Ponto::Malformada << nada;
    QTest::newRow("negative chunk size") << QByteArray(pedacos + "-3\r\nabc\r\n") << Ponto::Malformada << nada;
    QTest::newRow("chunk longer than told")
        << QByteArray(pedacos + "2\r\nabc\r\n") << Ponto::Malformada << QByteArray("ab");
    QTest::newRow("chunks cut") << QByteArray(pedacos + "3\r\nabc\r\n") << Ponto::Cortada << QByteArray("abc");
    QTest::newRow("both measures") << QByteArray(ok +
                                                 "Content-Length: 3\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n")
                                   << Ponto::Malformada << nada;
    QTest::newRow("unknown coding") << QByteArray(ok + "Transfer-Encoding: gzip\r\n\r\nabc") << Ponto::Malformada
                                    << nada;
    QTest::newRow("no status") << QByteArray("HTTP/1.1 OK\r\n\r\n") << Ponto::Malformada << nada;
    QTest::newRow("field without name") << QByteArray(ok + ": x\r\n\r\n") << Ponto::Malformada << nada;
    QTest::newRow("head without end") << QByteArray(ok + "X: " + QByteArray(20000, 'a')) << Ponto::Malformada << nada;
    QTest::newRow("fields without end")
        << QByteArray(ok + QByteArray("Abcdefg: " + QByteArray(200, 'a') + "\r\n").repeated(90)) << Ponto::Malformada
        << nada;
    QTest::newRow("another protocol") << QByteArray("SSH-2.0") << Ponto::Malformada << nada;
    QTest::newRow("nothing") << nada << Ponto::Cortada << nada;
}

void tst_unidades_http::leitorHttp() {
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

void tst_unidades_http::codificacoes_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("tipo");
    QTest::addColumn<QString>("texto"); // null: refused
    const auto xml = [](const char *nome, const QByteArray &resto) {
        return QByteArray("<?xml version=\"1.0\" encoding='" + QByteArray(nome) + "'?>" + resto);
    };
    const auto com = [](const char *nome) {
        return QString(u"<?xml version=\"1.0\" encoding='"_s + QLatin1StringView(nome) + u"'?>ç€"_s);
    };
    QTest::newRow("undeclared") << QByteArray("ç€") << QByteArray("text/xml") << u"ç€"_s;
    QTest::newRow("declared") << xml("windows-1252", "\xE7\x80") << QByteArray() << com("windows-1252");
    QTest::newRow("declared beats transport")
        << xml("UTF-8", "ç€") << QByteArray("text/xml; charset=ISO-8859-1") << com("UTF-8");
    QTest::newRow("transport") << QByteArray("\xE7") << QByteArray("text/xml; Charset=\"iso-8859-1\"") << u"ç"_s;
    QTest::newRow("mark") << QByteArray("\xFF\xFE\xE7\x00\xAC\x20", 6) << QByteArray("a; charset=utf-8") << u"ç€"_s;
    QTest::newRow("mark left out") << QByteArray("\xEF\xBB\xBFç") << QByteArray() << u"ç"_s;
    QTest::newRow("not what it says") << xml("UTF-8", "\xE7 ") << QByteArray() << QString();
    QTest::newRow("byte outside the encoding") << xml("US-ASCII", "a\xE7z") << QByteArray() << QString();
    QTest::newRow("unknown encoding") << xml("klingon-1", "a") << QByteArray() << QString();
    QTest::newRow("zero bytes") << QByteArray("a\0b", 3) << QByteArray() << QString();
}

void tst_unidades_http::codificacoes() {
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, tipo);
    QTEST(descodificarDocumento(bytes, tipo).value_or(QString()), "texto");
}

void tst_unidades_http::documento_data() {
    QTest::addColumn<Defeitos>("defeitos");
    QTest::addColumn<Causa>("causa");
    QTest::newRow("good") << Defeitos{} << Causa::Nenhuma;
    QTest::newRow("chunked") << Defeitos{Defeito::WebPedacos} << Causa::Nenhuma;
    QTest::newRow("windows-1252") << Defeitos{Defeito::XmlLatino} << Causa::Nenhuma;
    QTest::newRow("late, but in time") << Defeitos{Defeito::Lento} << Causa::Nenhuma;
    QTest::newRow("silent") << Defeitos{Defeito::Silencioso} << Causa::Tempo;
    QTest::newRow("drips") << Defeitos{Defeito::WebGota} << Causa::Tempo;
    QTest::newRow("reset") << Defeitos{Defeito::WebCorta} << Causa::Interrompida;
    QTest::newRow("no end") << Defeitos{Defeito::WebInfinito} << Causa::Grande;
    QTest::newRow("50 MB") << Defeitos{Defeito::Xml50Mb} << Causa::Grande;
    QTest::newRow("no HTTP") << Defeitos{Defeito::WebLixo} << Causa::Malformada;
    QTest::newRow("bad chunks") << Defeitos{Defeito::WebPedacosMaus} << Causa::Malformada;
    QTest::newRow("status 500") << Defeitos{Defeito::WebEstado} << Causa::Estado;
    QTest::newRow("redirection") << Defeitos{Defeito::WebReencaminha} << Causa::Redireccionada;
    QTest::newRow("announces more") << Defeitos{Defeito::TamanhoMaior} << Causa::Interrompida;
    QTest::newRow("announces less") << Defeitos{Defeito::TamanhoMenor} << Causa::Excedente;
    QTest::newRow("empty") << Defeitos{Defeito::XmlVazio} << Causa::Vazia;
    QTest::newRow("wrong encoding") << Defeitos{Defeito::XmlCodificacao} << Causa::Codificacao;
}

void tst_unidades_http::documento() {
    QFETCH(Defeitos, defeitos);
    QFETCH(Causa, causa);
    auto d = simulador::Definicao();
    d.nome = u"Câmara 1"_s;
    d.defeitos = defeitos;
    d.atrasoMs = 100;
    const auto unidade = ligarUnidade(d);
    const auto http = novoKVsocket();
    QElapsedTimer relogio;
    relogio.start();
    const QString texto = http->GET(u"http://127.0.0.2/setup.xml"_s, 400, unidade->portaWeb());
    QVERIFY2(relogio.elapsed() < 15000, qPrintable(QString::number(relogio.elapsed())));
    QCOMPARE(http->causa(), causa);
    QCOMPARE(http->erro().isEmpty(), causa == Causa::Nenhuma);
    QCOMPARE(texto.contains(u"<DeviceName>Câmara 1</DeviceName>"_s), causa == Causa::Nenhuma);
    QCOMPARE(texto.isEmpty(), causa != Causa::Nenhuma);
    QCOMPARE(http->corpo().isEmpty(), causa != Causa::Nenhuma);
    QCOMPARE(unidade->pedidosWeb(), defeitos.tem(Defeito::Silencioso) ? 0 : 1); // asked once, never again
    // The object is as good as new.
    unidade->definirDefeitos({});
    QVERIFY(!http->ocupado());
    QVERIFY(http->GET(u"http://127.0.0.2/setup.xml"_s, 2000, unidade->portaWeb()).contains(u"</Root>"_s));
}

void tst_unidades_http::documentoSemQuemResponda() {
    const auto http = novoKVsocket();
    quint16 livre = 0;
    {
        QTcpServer servidor;
        QVERIFY(servidor.listen(QHostAddress(u"127.0.0.7"_s)));
        livre = servidor.serverPort();
    }
    const struct {
        QString url;
        quint16 porta;
        Causa causa;
    } casos[] = {
        {u"http://127.0.0.7/setup.xml"_s, livre, Causa::Recusada},
        {u"ftp://127.0.0.7/setup.xml"_s, 80, Causa::Endereco},
        {u"http:///setup.xml"_s, 80, Causa::Endereco},
        {u"http://127.0.0.7 x/"_s, 80, Causa::Endereco},
        {u"http://127.0.0.7/"_s, 0, Causa::Endereco},
    };
    for (const auto &caso : casos) {
        QVERIFY(http->GET(caso.url, 500, caso.porta).isEmpty());
        QVERIFY2(http->causa() == caso.causa, qPrintable(caso.url));
    }
    QTcpServer mudo; // takes the connection and closes it without a byte
    QVERIFY(mudo.listen(QHostAddress(u"127.0.0.7"_s)));
    connect(&mudo, &QTcpServer::newConnection, &mudo, [&] { mudo.nextPendingConnection()->disconnectFromHost(); });
    http->GET(u"http://127.0.0.7/"_s, 500, mudo.serverPort());
    QCOMPARE(http->causa(), Causa::SemResposta);
}

void tst_unidades_http::documentoDeixaCorrerEventos() {
    const auto unidade = ligarUnidade(u"127.0.0.2"_s, {Defeito::Silencioso});
    const auto http = novoKVsocket();
    MedidorDeParagens paragens;
    QString segundo = u"?"_s;
    Causa doSegundo = Causa::Nenhuma;
    QTimer::singleShot(50, http.get(), [&] {
        QVERIFY(http->ocupado());
        segundo = http->GET(u"http://127.0.0.2/"_s, 100, unidade->portaWeb());
        doSegundo = http->causa();
    });
    http->GET(u"http://127.0.0.2/setup.xml"_s, 300, unidade->portaWeb());
    QCOMPARE(http->causa(), Causa::Tempo);
    QVERIFY(segundo.isEmpty());
    QCOMPARE(doSegundo, Causa::Ocupado);
    QVERIFY(paragens.voltas() > 50);
    QVERIFY2(paragens.maior() < paragemMaxima, qPrintable(QString::number(paragens.maior())));
}

void tst_unidades_http::objectoDestruidoDuranteOPedido() {
    const auto unidade = ligarUnidade(u"127.0.0.2"_s, {Defeito::WebGota});
    auto http = novoKVsocket();
    QTimer::singleShot(60, this, [&] { http.reset(); });
    QElapsedTimer relogio;
    relogio.start();
    QVERIFY_THROWS_EXCEPTION(Interrompido, http->GET(u"http://127.0.0.2/setup.xml"_s, 30000, unidade->portaWeb()));
    QVERIFY(relogio.elapsed() < 15000);

    auto dono = std::make_unique<QObject>();
    QTimer::singleShot(30, this, [&] { dono.reset(); });
    QVERIFY_THROWS_EXCEPTION(Interrompido, espera::pausar(dono.get(), 30000));
    relogio.restart();
    espera::pausar(this, 80);
    QVERIFY(relogio.elapsed() >= 80);
}

QTEST_GUILESS_MAIN(tst_unidades_http)
#include "tst_unidades_http.moc"
