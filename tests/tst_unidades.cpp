#include "core/estado.h"
#include "core/falha.h"
#include "platform/unit/Consola.h"
#include "platform/unit/KVsocket.h"
#include "platform/unit/UdpSetup.h"
#include "platform/unit/espera.h"
#include "platform/unit/leitorHttp.h"
#include "platform/unit/rede.h"
#include "platform/unit/telnet.h"
#include "platform/unit/texto.h"
#include "tests/apoio/instalacao.h"
#include "tests/unidadesDeTeste.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

using simulador::Defeito;
using simulador::Defeitos;
using Causa = KVsocket::Causa;
using Ponto = LeitorHttp::Ponto;
Q_DECLARE_METATYPE(simulador::Defeitos)
Q_DECLARE_METATYPE(KVsocket::Causa)
Q_DECLARE_METATYPE(LeitorHttp::Ponto)

class tst_unidades : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma); }
    void cleanup() { m_instalacao.reset(); }
    void lista_data();
    void lista();
    void listaDasDefinicoes();
    void destinosERede_data();
    void destinosERede();
    void resolver();
    void leitorHttp_data();
    void leitorHttp();
    void codificacoes_data();
    void codificacoes();
    void documento_data();
    void documento();
    void documentoSemQuemResponda();
    void documentoDeixaCorrerEventos();
    void objectoDestruidoDuranteOPedido();
    void pesquisaEncontraCadaUnidadeUmaVez();
    void pesquisaRespeitaALista();
    void pesquisaTardia();
    void pesquisaInundada();
    void pesquisaSemDestinos();
    void telnet_data();
    void telnet();
    void acertoPelaConsola_data();
    void acertoPelaConsola();
    void consolaManual();
    void consolaFalha_data();
    void consolaFalha();
    void consolaDestruidaNoTratamento();
    void programaDasUnidades();

private:
    std::unique_ptr<Instalacao> m_instalacao;
};

void tst_unidades::lista_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QStringList>("destinos");
    QTest::addColumn<int>("invalidos");
    QTest::newRow("one, usual port") << u"192.168.1.255"_s << QStringList{u"192.168.1.255:22510"_s} << 0;
    QTest::newRow("ports and separators")
        << u"127.0.0.2:5000, 127.0.0.3;127.0.0.4 "_s
        << QStringList{u"127.0.0.2:5000"_s, u"127.0.0.3:22510"_s, u"127.0.0.4:22510"_s} << 0;
    QTest::newRow("twice the same") << u"127.0.0.2 127.0.0.2"_s << QStringList{u"127.0.0.2:22510"_s} << 0;
    QTest::newRow("short forms go nowhere") << u"127.1 10 0x7f000001 10.0.0 10.0.0.256"_s << QStringList{} << 5;
    QTest::newRow("names and bad ports") << u"casa ::1 10.0.0.1:0 10.0.0.1:70000 10.0.0.1:"_s << QStringList{} << 5;
    QTest::newRow("empty") << QString() << QStringList{} << 0;
}

void tst_unidades::lista() {
    QFETCH(QString, texto);
    const rede::ListaDePesquisa lida = rede::lerLista(texto);
    QStringList destinos;
    for (const rede::Destino &d : lida.destinos)
        destinos.append(d.endereco.toString() + u':' + QString::number(d.porta));
    QTEST(destinos, "destinos");
    QTEST(int(lida.invalidos.size()), "invalidos");
    QVERIFY(lida.definida);
}

void tst_unidades::listaDasDefinicoes() {
    QVERIFY(!rede::listaDasDefinicoes().definida);
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"Pesquisa"_s, {});
    QVERIFY(rede::listaDasDefinicoes().definida); // asked to search nowhere, which is not everywhere
    // The store gives 512 characters; the cut must not turn 10.0.0.25 into 10.0.0.2.
    QString longa;
    while (longa.size() < 504)
        longa += u"10.10.10.10:9999,"_s.left(std::min<qsizetype>(17, 504 - longa.size()));
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"Pesquisa"_s, longa.replace(503, 1, u","_s) + u"10.0.0.25"_s);
    for (const rede::Destino &d : rede::listaDasDefinicoes().destinos)
        QVERIFY2(d.endereco != QHostAddress(u"10.0.0.2"_s), qPrintable(d.endereco.toString()));
    QCOMPARE(rede::portaDaConsola(), quint16(99));
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"PortaConsola"_s, u"2099"_s);
    QCOMPARE(rede::portaDaConsola(), quint16(2099));
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"PortaConsola"_s, u"99999"_s);
    QCOMPARE(rede::portaDaConsola(), quint16(99));
}

void tst_unidades::destinosERede_data() {
    QTest::addColumn<QString>("lista"); // "-": none
    QTest::addColumn<QStringList>("interfaces");
    QTest::addColumn<QStringList>("destinos"); // "to from local"
    QTest::addColumn<bool>("ligada");
    const QStringList lo{u"lo up loop 127.0.0.1"_s};
    const QStringList duas = lo + QStringList{u"a up cast 10.0.0.5"_s, u"b up cast 10.1.0.5 10.2.0.5"_s};
    QTest::newRow("none: every interface that is up")
        << u"-"_s << duas
        << QStringList{u"255.255.255.255 10.0.0.5"_s, u"255.255.255.255 10.1.0.5"_s, u"255.255.255.255 10.2.0.5"_s}
        << true;
    QTest::newRow("none: one that is down")
        << u"-"_s << lo + QStringList{u"a cast 10.0.0.5"_s} << QStringList{} << false;
    QTest::newRow("none: no broadcast there") << u"-"_s << QStringList{u"p up 10.0.0.5"_s} << QStringList{} << true;
    QTest::newRow("up without address") << u"-"_s << QStringList{u"a up cast"_s} << QStringList{} << false;
    QTest::newRow("loopback list") << u"127.0.0.2"_s << lo << QStringList{u"127.0.0.2 "_s} << true;
    QTest::newRow("mixed list") << u"127.0.0.2 10.0.0.9"_s << lo << QStringList{u"127.0.0.2 "_s, u"10.0.0.9 "_s}
                                << false;
    QTest::newRow("empty list") << u""_s << duas << QStringList{} << true;
    QTest::newRow("nothing at all") << u"127.0.0.2"_s << QStringList{} << QStringList{u"127.0.0.2 "_s} << false;
}

void tst_unidades::destinosERede() {
    QFETCH(QString, lista);
    QFETCH(QStringList, interfaces);
    QList<rede::Interface> redes;
    for (const QString &texto : std::as_const(interfaces)) {
        QStringList partes = texto.split(u' ');
        rede::Interface i{partes.takeFirst(),
                          partes.removeAll(u"up"_s) > 0,
                          partes.removeAll(u"loop"_s) > 0,
                          partes.removeAll(u"cast"_s) > 0,
                          {}};
        for (const QString &endereco : std::as_const(partes))
            i.enderecos.append(QHostAddress(endereco));
        redes.append(i);
    }
    const rede::ListaDePesquisa lida = lista == u"-" ? rede::ListaDePesquisa() : rede::lerLista(lista);
    QStringList destinos;
    for (const rede::Destino &d : rede::destinos(lida, redes))
        destinos.append(d.endereco.toString() + u' ' + d.origem.toString());
    QTEST(destinos, "destinos");
    QTEST(rede::redeLigada(lida, redes), "ligada");
}

void tst_unidades::resolver() {
    QCOMPARE(rede::resolver(u" 127.0.0.9 "_s, this), u"127.0.0.9"_s);
    QCOMPARE(rede::resolver(u"localhost"_s, this), u"127.0.0.1"_s);
    QCOMPARE(rede::resolver({}, this), QString());
    QCOMPARE(rede::resolver(u"nao existe"_s, this), QString());
    auto dono = std::make_unique<QObject>();
    QTimer::singleShot(0, this, [&] { dono.reset(); });
    QVERIFY_THROWS_EXCEPTION(Interrompido, rede::resolver(u"localhost"_s, dono.get()));
}

void tst_unidades::leitorHttp_data() {
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

void tst_unidades::leitorHttp() {
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

void tst_unidades::codificacoes_data() {
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

void tst_unidades::codificacoes() {
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, tipo);
    QTEST(descodificarDocumento(bytes, tipo).value_or(QString()), "texto");
}

void tst_unidades::documento_data() {
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

void tst_unidades::documento() {
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
    QVERIFY2(relogio.elapsed() < 1500, qPrintable(QString::number(relogio.elapsed())));
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

void tst_unidades::documentoSemQuemResponda() {
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

void tst_unidades::documentoDeixaCorrerEventos() {
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
    QVERIFY2(paragens.maior() < 50, qPrintable(QString::number(paragens.maior())));
}

void tst_unidades::objectoDestruidoDuranteOPedido() {
    const auto unidade = ligarUnidade(u"127.0.0.2"_s, {Defeito::WebGota});
    auto http = novoKVsocket();
    QTimer::singleShot(60, this, [&] { http.reset(); });
    QElapsedTimer relogio;
    relogio.start();
    QVERIFY_THROWS_EXCEPTION(Interrompido, http->GET(u"http://127.0.0.2/setup.xml"_s, 3000, unidade->portaWeb()));
    QVERIFY(relogio.elapsed() < 1000);

    auto dono = std::make_unique<QObject>();
    QTimer::singleShot(30, this, [&] { dono.reset(); });
    QVERIFY_THROWS_EXCEPTION(Interrompido, espera::pausar(dono.get(), 3000));
    relogio.restart();
    espera::pausar(this, 80);
    QVERIFY(relogio.elapsed() >= 80 && relogio.elapsed() < 300);
}

namespace {

QList<rede::Destino> destinosDe(const std::vector<std::unique_ptr<simulador::Unidade>> &unidades) {
    QList<rede::Destino> destinos;
    for (const auto &u : unidades)
        destinos.append({QHostAddress(u->endereco()), u->portaPesquisa(), {}});
    return destinos;
}

} // namespace

void tst_unidades::pesquisaEncontraCadaUnidadeUmaVez() {
    const Defeitos defeitos[] = {{},
                                 {Defeito::BuscaDupla},
                                 {Defeito::BuscaMalformada},
                                 {Defeito::BuscaGrande},
                                 {Defeito::BuscaMuda},
                                 {Defeito::BuscaTardia}};
    std::vector<std::unique_ptr<simulador::Unidade>> unidades;
    for (const Defeitos &d : defeitos)
        unidades.push_back(ligarUnidade(u"127.0.0.%1"_s.arg(unidades.size() + 2), d));
    const auto busca = novoUdpSetup();
    busca->definirDestinos(destinosDe(unidades));
    busca->definirDuracao(500);
    QSignalSpy fim(busca.get(), &UdpSetup::OnSearch);
    for (int vez = 0; vez < 2; ++vez) { // the second search begins anew
        busca->pesquisar();
        QVERIFY(busca->aPesquisar());
        QTRY_COMPARE(fim.count(), vez + 1);
        QStringList enderecos;
        for (int i = 0; busca->seleccionar(i); ++i)
            enderecos.append(busca->endereco());
        enderecos.sort();
        QCOMPARE(enderecos, QStringList({u"127.0.0.2"_s, u"127.0.0.3"_s, u"127.0.0.7"_s}));
        QCOMPARE(busca->nDispositivos(), 3);
    }
    for (int i = 0; busca->seleccionar(i) && busca->endereco() != u"127.0.0.2"; ++i) {
    }
    QCOMPARE(busca->mac(), unidades[0]->definicao().mac);
    QCOMPARE(busca->nome(), unidades[0]->definicao().nome);
    QCOMPARE(busca->firmware(), unidades[0]->definicao().firmware);
    QCOMPARE(busca->modelo(), qint16(4));
    QCOMPARE(busca->porta(), unidades[0]->portaWeb());
    QVERIFY(!busca->seleccionar(3) && busca->mac().isEmpty());
}

void tst_unidades::pesquisaRespeitaALista() {
    const auto perguntada = ligarUnidade(u"127.0.0.2"_s, {});
    const auto outra = ligarUnidade(u"127.0.0.3"_s, {});
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"Pesquisa"_s,
                        u"127.0.0.2:"_s + QString::number(perguntada->portaPesquisa()));
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"PesquisaDuracao"_s, u"200"_s);
    const auto busca = novoUdpSetup();
    QSignalSpy fim(busca.get(), &UdpSetup::OnSearch);
    busca->pesquisar();
    QVERIFY(fim.wait(1000));
    QCOMPARE(busca->nDispositivos(), 1);
    QCOMPARE(perguntada->perguntas(), 3); // asked again, in case a datagram was lost
    QCOMPARE(outra->perguntas(), 0);
    busca->pesquisar();
    busca->parar();
    QVERIFY(!fim.wait(300));
}

void tst_unidades::pesquisaTardia() {
    std::vector<std::unique_ptr<simulador::Unidade>> unidades;
    unidades.push_back(ligarUnidade(u"127.0.0.2"_s, {Defeito::BuscaTardia}));
    const auto busca = novoUdpSetup();
    busca->definirDestinos(destinosDe(unidades));
    busca->definirDuracao(100); // the unit needs 150
    QSignalSpy fim(busca.get(), &UdpSetup::OnSearch);
    busca->pesquisar();
    QVERIFY(fim.wait(1000));
    QTest::qWait(150);
    QCOMPARE(busca->nDispositivos(), 0);
    busca->pesquisar(); // an answer to the former search is none to this one
    QVERIFY(fim.wait(1000));
    QCOMPARE(busca->nDispositivos(), 0);
}

void tst_unidades::pesquisaInundada() {
    std::vector<std::unique_ptr<simulador::Unidade>> unidades;
    unidades.push_back(ligarUnidade(u"127.0.0.2"_s, {Defeito::BuscaInundacao}));
    unidades.push_back(ligarUnidade(u"127.0.0.3"_s, {}));
    const auto busca = novoUdpSetup();
    busca->definirDestinos(destinosDe(unidades));
    busca->definirDuracao(600);
    MedidorDeParagens paragens;
    QSignalSpy fim(busca.get(), &UdpSetup::OnSearch);
    busca->pesquisar();
    QVERIFY(fim.wait(3000));
    QHash<QString, int> por;
    for (const auto &d : busca->dispositivos())
        ++por[d.endereco];
    QCOMPARE(por[u"127.0.0.3"_s], 1);
    QCOMPARE(por[u"127.0.0.2"_s], 32);
    QVERIFY2(paragens.maior() < 50, qPrintable(QString::number(paragens.maior())));
}

void tst_unidades::pesquisaSemDestinos() {
    const auto busca = novoUdpSetup();
    busca->definirDestinos({});
    QSignalSpy erro(busca.get(), &UdpSetup::OnError);
    busca->pesquisar();
    QCOMPARE(erro.count(), 0); // never from inside the call
    QTRY_COMPARE(erro.count(), 1);
    QCOMPARE(erro.at(0).at(0).toInt(), int(UdpSetup::semDestinos));
    QVERIFY(!busca->aPesquisar());
}

void tst_unidades::telnet_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("texto");
    QTest::newRow("options") << QByteArray::fromHex("fffb01 61 fffd03 62") << QByteArray("ab");
    QTest::newRow("subnegotiation") << QByteArray::fromHex("61 fffa18 01ff ff61 fff0 62") << QByteArray("ab");
    QTest::newRow("byte 255") << QByteArray::fromHex("61ffff62")
                              << QByteArray("a\xFF"
                                            "b");
    QTest::newRow("command") << QByteArray::fromHex("61fff162") << QByteArray("ab");
    QTest::newRow("unfinished") << QByteArray::fromHex("61fffb") << QByteArray("a");
}

void tst_unidades::telnet() {
    QFETCH(QByteArray, bytes);
    Telnet inteiro;
    QTEST(inteiro.limpar(bytes), "texto");
    Telnet aosBocados;
    QByteArray texto;
    for (const char c : std::as_const(bytes))
        texto += aosBocados.limpar(QByteArray(1, c));
    QTEST(texto, "texto");
}

void tst_unidades::acertoPelaConsola_data() {
    QTest::addColumn<Defeitos>("defeitos");
    QTest::addColumn<bool>("confirma");
    QTest::addColumn<bool>("acerta");
    QTest::newRow("good") << Defeitos{} << true << true;
    QTest::newRow("telnet options") << Defeitos{Defeito::ConsolaOpcoes} << true << true;
    QTest::newRow("late") << Defeitos{Defeito::Lento} << true << true;
    QTest::newRow("never confirms") << Defeitos{Defeito::ConsolaNega} << false << true;
    QTest::newRow("mute") << Defeitos{Defeito::ConsolaMuda} << false << false;
    QTest::newRow("closes") << Defeitos{Defeito::ConsolaFecha} << false << false;
}

// One key at each arrival, as the setting of the clock does it.
void tst_unidades::acertoPelaConsola() {
    QFETCH(Defeitos, defeitos);
    simulador::Definicao d;
    d.defeitos = defeitos;
    d.atrasoMs = 20;
    d.acertoMinutos = -21;
    const auto unidade = ligarUnidade(d);
    const auto consola = novaConsola();
    const QStringList teclas{u"\r"_s, u"\r"_s, u"y"_s, u"c07.03.2011/09:05:00"_s, u"\r"_s, u"x"_s};
    QString texto;
    int passo = 0;
    connect(consola.get(), &Consola::DataArrival, consola.get(), [&] {
        texto += consola->GetData();
        if (consola->State() > 0 && passo < teclas.size())
            consola->SendData(teclas.at(passo));
        ++passo;
    });
    consola->Connect(u"127.0.0.2"_s, unidade->portaConsola());
    QCOMPARE(consola->State(), int(Consola::aLigar));
    const bool acabou = QTest::qWaitFor([&] { return texto.contains(u"OK"_s) || consola->State() == 0; }, 800);
    QCOMPARE(acabou, !defeitos.tem(Defeito::ConsolaMuda));
    QTEST(texto.contains(u"OK"_s), "confirma");
    const bool acertado =
        qAbs(unidade->registo().relogio().secsTo(QDateTime(QDate(2011, 3, 7), QTime(9, 5), Qt::UTC))) < 60;
    QTEST(acertado, "acerta");
    QVERIFY(!texto.contains(QChar(0xFF)));
    consola->Close();
    QCOMPARE(consola->State(), int(Consola::fechada));
}

void tst_unidades::consolaManual() {
    const auto unidade = ligarUnidade(u"127.0.0.2"_s, {});
    const auto consola = novaConsola();
    QString texto;
    connect(consola.get(), &Consola::DataArrival, consola.get(), [&] { texto += consola->GetData(); });
    consola->Connect(u"127.0.0.2"_s, unidade->portaConsola());
    const auto enviar = [&](const QString &linha, const QString &esperado) {
        texto.clear();
        QVERIFY(consola->SendData(linha));
        QTRY_VERIFY2_WITH_TIMEOUT(texto.contains(esperado), qPrintable(texto), 1000);
    };
    QTRY_VERIFY(texto.contains(u"Press Enter"_s));
    enviar(u"\r\n"_s, u"go on"_s);
    enviar(u"\r\n"_s, u"(y/n)"_s);
    enviar(u"y"_s, u"erase all"_s);
    enviar(u"c31.02.2011/09:05:00\r\n"_s, u"no date"_s);
    QCOMPARE(unidade->registo().quantos(), qint64(200));
    enviar(u"e"_s, u"(y/n)"_s);
    enviar(u"n"_s, u"Nothing"_s);
    QCOMPARE(unidade->registo().quantos(), qint64(200));
    enviar(u"e"_s, u"(y/n)"_s);
    enviar(u"y"_s, u"Erased"_s);
    QCOMPARE(unidade->registo().quantos(), qint64(0));
    enviar(u"x"_s, u"Not saved"_s);    // the clock was refused
    QTRY_COMPARE(consola->State(), 0); // the unit has closed
    QVERIFY(!consola->SendData(u"x"_s));
}

void tst_unidades::consolaFalha_data() {
    QTest::addColumn<QString>("caso");
    QTest::addColumn<int>("numero");
    QTest::newRow("nobody listens") << u"fechada"_s << int(Consola::erroRecusada);
    QTest::newRow("no room for another connection") << u"cheia"_s << int(Consola::erroTempo);
}

void tst_unidades::consolaFalha() {
    QFETCH(QString, caso);
    QTcpServer servidor;
    servidor.setListenBacklogSize(1);
    QVERIFY(servidor.listen(QHostAddress(u"127.0.0.7"_s)));
    const quint16 porta = servidor.serverPort();
    std::vector<std::unique_ptr<QTcpSocket>> ocupam;
    if (caso == u"fechada") {
        servidor.close();
    } else {
        servidor.pauseAccepting(); // the queue fills, later connections wait for ever
        for (int i = 0; i < 8; ++i) {
            ocupam.push_back(std::make_unique<QTcpSocket>());
            ocupam.back()->connectToHost(u"127.0.0.7"_s, porta);
        }
        QTest::qWait(50);
    }
    const auto consola = novaConsola();
    consola->definirTempo(200);
    QSignalSpy erro(consola.get(), &Consola::Error);
    consola->Connect(u"127.0.0.7"_s, porta);
    QVERIFY(erro.wait(1500));
    QTEST(erro.at(0).at(0).toInt(), "numero");
    QVERIFY(!erro.at(0).at(1).toString().isEmpty());
    QCOMPARE(consola->State(), 0);
}

void tst_unidades::consolaDestruidaNoTratamento() {
    const auto unidade = ligarUnidade(u"127.0.0.2"_s, {});
    auto consola = novaConsola();
    const QPointer<Consola> viva(consola.get());
    connect(consola.get(), &Consola::DataArrival, this, [&] { consola.reset(); });
    consola->Connect(u"127.0.0.2"_s, unidade->portaConsola());
    QTRY_VERIFY(viva.isNull());
    QTest::qWait(20);
}

// Started as a user starts it: found by a search on the settings it prints, read, and erased for good.
void tst_unidades::programaDasUnidades() {
    const QString pasta = m_instalacao->ficheiro(u"estado"_s);
    const QStringList argumentos{u"--estado"_s,        pasta,           u"--porta-web"_s,      u"0"_s,
                                 u"--porta-consola"_s, u"0"_s,          u"--porta-pesquisa"_s, u"0"_s,
                                 u"--unidade"_s,       u"127.0.0.12"_s, u"--nome"_s,           u"Câmara Fria"_s,
                                 u"--registos=10"_s};
    QProcess programa;
    const auto arrancar = [&] {
        programa.start(QStringLiteral(KELVARK_UNIDADES), argumentos);
        QVERIFY(programa.waitForStarted());
        QByteArray saida;
        while (!saida.contains("PortaConsola=") && programa.waitForReadyRead(3000))
            saida += programa.readAllStandardOutput();
        const auto lista = QRegularExpression(u"Pesquisa=(.*)\n"_s).match(QString::fromUtf8(saida));
        QVERIFY2(lista.hasMatch(), saida.constData());
        modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"Pesquisa"_s, lista.captured(1));
    };
    arrancar();
    modINI::SaveSetting(u"Vistrel"_s, u"D2251"_s, u"PesquisaDuracao"_s, u"300"_s);
    const auto busca = novoUdpSetup();
    QSignalSpy fim(busca.get(), &UdpSetup::OnSearch);
    busca->pesquisar();
    QVERIFY(fim.wait(2000));
    QVERIFY(busca->seleccionar(0));
    QCOMPARE(busca->nome(), u"Câmara Fria"_s);
    QVERIFY(novoKVsocket()->GET(u"http://127.0.0.12/setup.xml"_s, 2000, busca->porta()).contains(u"Câmara Fria"_s));
    programa.kill();
    QVERIFY(programa.waitForFinished());

    programa.start(QStringLiteral(KELVARK_UNIDADES), {u"--unidade"_s, u"192.168.1.2"_s});
    QVERIFY(programa.waitForFinished());
    QCOMPARE(programa.exitCode(), 2); // never outside this computer
}

QTEST_GUILESS_MAIN(tst_unidades)
#include "tst_unidades.moc"
