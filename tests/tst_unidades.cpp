#include "core/estado.h"
#include "core/falha.h"
#include "platform/unit/Consola.h"
#include "platform/unit/KVsocket.h"
#include "platform/unit/UdpSetup.h"
#include "platform/unit/rede.h"
#include "platform/unit/telnet.h"
#include "tests/apoio/instalacao.h"
#include "tests/unidadesDeTeste.h"

#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

using simulador::Defeito;
using simulador::Defeitos;
Q_DECLARE_METATYPE(simulador::Defeitos)

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
    void pesquisaEncontraCadaUnidadeUmaVez();
    void pesquisaRespeitaALista();
    void pesquisaTardia();
    void pesquisaInundada();
    void pesquisaSemDestinos();
    void pesquisaDestruidaNoTratamento();
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
    QVERIFY2(paragens.maior() < paragemMaxima, qPrintable(QString::number(paragens.maior())));
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

void tst_unidades::pesquisaDestruidaNoTratamento() {
    for (const bool falha : {false, true}) {
        auto busca = novoUdpSetup();
        const QPointer<UdpSetup> viva(busca.get());
        busca->definirDestinos(falha ? QList<rede::Destino>()
                                     : QList<rede::Destino>{{QHostAddress(u"127.0.0.2"_s), 9, {}}});
        busca->definirDuracao(50);
        connect(busca.get(), &UdpSetup::OnSearch, this, [&] { busca.reset(); });
        connect(busca.get(), &UdpSetup::OnError, this, [&] { busca.reset(); });
        busca->pesquisar();
        QTRY_VERIFY_WITH_TIMEOUT(viva.isNull(), 1000);
    }
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
    const bool muda = defeitos.tem(Defeito::ConsolaMuda);
    const bool acabou =
        QTest::qWaitFor([&] { return texto.contains(u"OK"_s) || consola->State() == 0; }, muda ? 800 : 5000);
    QCOMPARE(acabou, !muda);
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
