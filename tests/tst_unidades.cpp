#include "core/estado.h"
#include "core/falha.h"
#include "platform/unit/Consola.h"
#include "platform/unit/KVsocket.h"
#include "platform/unit/UdpSetup.h"
#include "platform/unit/rede.h"
#include "platform/unit/telnet.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"
#include "tests/unidadesDeTeste.h"

#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

using simulador::Defeito;
using simulador::Defeitos;

namespace {

QList<rede::Destino> destinosDe(const std::vector<std::unique_ptr<simulador::Unidade>> &unidades) {
    QList<rede::Destino> destinos;
    for (const auto &u : unidades)
        destinos.append({QHostAddress(u->endereco()), u->portaPesquisa(), {}});
    return destinos;
}

} // namespace

class tst_unidades : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma); }
    void cleanup() { m_instalacao.reset(); }

    void lista_data() {
        const Tabela<QString, QStringList, int> caso("texto", "destinos", "invalidos");
        caso("one, usual port", u"192.168.1.255"_s, {u"192.168.1.255:22510"_s}, 0);
        caso("ports and separators", u"127.0.0.2:5000, 127.0.0.3;127.0.0.4 "_s,
             {u"127.0.0.2:5000"_s, u"127.0.0.3:22510"_s, u"127.0.0.4:22510"_s}, 0);
        caso("twice the same", u"127.0.0.2 127.0.0.2"_s, {u"127.0.0.2:22510"_s}, 0);
        caso("short forms go nowhere", u"127.1 10 0x7f000001 10.0.0 10.0.0.256"_s, {}, 5);
        caso("names and bad ports", u"casa ::1 10.0.0.1:0 10.0.0.1:70000 10.0.0.1:"_s, {}, 5);
        caso("empty", {}, {}, 0);
    }
    void lista() {
        QFETCH(QString, texto);
        const rede::ListaDePesquisa lida = rede::lerLista(texto);
        QStringList destinos;
        for (const rede::Destino &d : lida.destinos)
            destinos.append(d.endereco.toString() + u':' + QString::number(d.porta));
        QTEST(destinos, "destinos");
        QTEST(int(lida.invalidos.size()), "invalidos");
        QVERIFY(lida.definida);
    }

    void listaDasDefinicoes() {
        QVERIFY(!rede::listaDasDefinicoes().definida);
        definir(u"Pesquisa"_s, {});
        QVERIFY(rede::listaDasDefinicoes().definida); // asked to search nowhere, which is not everywhere
        // The store gives 512 characters; the cut must not turn 10.0.0.25 into 10.0.0.2.
        QString longa;
        while (longa.size() < 504)
            longa += u"10.10.10.10:9999,"_s.left(std::min<qsizetype>(17, 504 - longa.size()));
        definir(u"Pesquisa"_s, longa.replace(503, 1, u","_s) + u"10.0.0.25"_s);
        for (const rede::Destino &d : rede::listaDasDefinicoes().destinos)
            QVERIFY2(d.endereco != QHostAddress(u"10.0.0.2"_s), qPrintable(d.endereco.toString()));
        QCOMPARE(rede::portaDaConsola(), quint16(99));
        definir(u"PortaConsola"_s, u"2099"_s);
        QCOMPARE(rede::portaDaConsola(), quint16(2099));
        definir(u"PortaConsola"_s, u"99999"_s);
        QCOMPARE(rede::portaDaConsola(), quint16(99));
    }

    void destinosERede_data() {
        // lista: "-": none; destinos: "to from local"
        const Tabela<QString, QStringList, QStringList, bool> caso("lista", "interfaces", "destinos", "ligada");
        const QStringList lo{u"lo up loop 127.0.0.1"_s};
        const QStringList duas = lo + QStringList{u"a up cast 10.0.0.5"_s, u"b up cast 10.1.0.5 10.2.0.5"_s};
        caso("none: every interface that is up", u"-"_s, duas,
             {u"255.255.255.255 10.0.0.5"_s, u"255.255.255.255 10.1.0.5"_s, u"255.255.255.255 10.2.0.5"_s}, true);
        caso("none: one that is down", u"-"_s, lo + QStringList{u"a cast 10.0.0.5"_s}, {}, false);
        caso("none: no broadcast there", u"-"_s, {u"p up 10.0.0.5"_s}, {}, true);
        caso("up without address", u"-"_s, {u"a up cast"_s}, {}, false);
        caso("loopback list", u"127.0.0.2"_s, lo, {u"127.0.0.2 "_s}, true);
        caso("mixed list", u"127.0.0.2 10.0.0.9"_s, lo, {u"127.0.0.2 "_s, u"10.0.0.9 "_s}, false);
        caso("empty list", u""_s, duas, {}, true);
        caso("nothing at all", u"127.0.0.2"_s, {}, {u"127.0.0.2 "_s}, false);
    }
    void destinosERede() {
        QFETCH(QString, lista);
        QFETCH(QStringList, interfaces);
        QList<rede::Interface> redes;
        for (const QString &texto : std::as_const(interfaces)) {
            QStringList partes = texto.split(u' ');
            const auto tem = [&partes](const QString &marca) { return partes.removeAll(marca) > 0; };
            rede::Interface i{partes.takeFirst(), tem(u"up"_s), tem(u"loop"_s), tem(u"cast"_s), {}};
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

    void resolver() {
        QCOMPARE(rede::resolver(u" 127.0.0.9 "_s, this), u"127.0.0.9"_s);
        QCOMPARE(rede::resolver(u"localhost"_s, this), u"127.0.0.1"_s);
        QCOMPARE(rede::resolver({}, this), QString());
        QCOMPARE(rede::resolver(u"nao existe"_s, this), QString());
        auto dono = std::make_unique<QObject>();
        QTimer::singleShot(0, this, [&] { dono.reset(); });
        QVERIFY_THROWS_EXCEPTION(Interrompido, rede::resolver(u"localhost"_s, dono.get()));
    }

    void pesquisaEncontraCadaUnidadeUmaVez() {
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

    void pesquisaRespeitaALista() {
        const auto perguntada = ligarUnidade(u"127.0.0.2"_s, {});
        const auto outra = ligarUnidade(u"127.0.0.3"_s, {});
        definir(u"Pesquisa"_s, u"127.0.0.2:"_s + QString::number(perguntada->portaPesquisa()));
        definir(u"PesquisaDuracao"_s, u"200"_s);
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

    void pesquisaTardia() {
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

    void pesquisaInundada() {
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

    void pesquisaSemDestinos() {
        const auto busca = novoUdpSetup();
        busca->definirDestinos({});
        QSignalSpy erro(busca.get(), &UdpSetup::OnError);
        busca->pesquisar();
        QCOMPARE(erro.count(), 0); // never from inside the call
        QTRY_COMPARE(erro.count(), 1);
        QCOMPARE(erro.at(0).at(0).toInt(), int(UdpSetup::semDestinos));
        QVERIFY(!busca->aPesquisar());
    }

    void pesquisaDestruidaNoTratamento() {
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

    void telnet_data() {
        const Tabela<QByteArray, QByteArray> caso("bytes", "texto");
        caso("options", QByteArray::fromHex("fffb01 61 fffd03 62"), "ab");
        caso("subnegotiation", QByteArray::fromHex("61 fffa18 01ff ff61 fff0 62"), "ab");
        caso("byte 255", QByteArray::fromHex("61ffff62"),
             QByteArray("a\xFF"
                        "b"));
        caso("command", QByteArray::fromHex("61fff162"), "ab");
        caso("unfinished", QByteArray::fromHex("61fffb"), "a");
    }
    void telnet() {
        QFETCH(QByteArray, bytes);
        Telnet inteiro;
        QTEST(inteiro.limpar(bytes), "texto");
        Telnet aosBocados;
        QByteArray texto;
        for (const char c : std::as_const(bytes))
            texto += aosBocados.limpar(QByteArray(1, c));
        QTEST(texto, "texto");
    }

    void consolaSemOpcoesDeTelnet() {
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, {Defeito::ConsolaOpcoes});
        const auto consola = novaConsola();
        QString texto;
        connect(consola.get(), &Consola::DataArrival, consola.get(), [&] { texto += consola->GetData(); });
        consola->Connect(u"127.0.0.2"_s, unidade->portaConsola());
        QCOMPARE(consola->State(), int(Consola::aLigar));
        QTRY_VERIFY(texto.contains(u"Press Enter"_s));
        QVERIFY(!texto.contains(QChar(0xFF)));
        consola->Close();
        QCOMPARE(consola->State(), int(Consola::fechada));
        QVERIFY(!consola->SendData(u"x"_s));
    }

    void consolaFalha_data() {
        const Tabela<QString, int> linha("caso", "numero");
        linha("nobody listens", u"fechada"_s, int(Consola::erroRecusada));
        linha("no room for another connection", u"cheia"_s, int(Consola::erroTempo));
    }
    void consolaFalha() {
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

    void consolaDestruidaNoTratamento() {
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, {});
        auto consola = novaConsola();
        const QPointer<Consola> viva(consola.get());
        connect(consola.get(), &Consola::DataArrival, this, [&] { consola.reset(); });
        consola->Connect(u"127.0.0.2"_s, unidade->portaConsola());
        QTRY_VERIFY(viva.isNull());
        QTest::qWait(20);
    }

    // Started as a user starts it: found by a search on the settings it prints, read, and erased for good.
    void programaDasUnidades() {
        const QString pasta = m_instalacao->ficheiro(u"estado"_s);
        const QString argumentos = u"--porta-web 0 --porta-consola 0 --porta-pesquisa 0 --unidade 127.0.0.12"_s;
        QProcess programa;
        const auto arrancar = [&] {
            programa.start(QStringLiteral(KELVARK_UNIDADES),
                           argumentos.split(u' ') +
                               QStringList{u"--estado"_s, pasta, u"--nome"_s, u"Câmara Fria"_s, u"--registos=10"_s});
            QVERIFY(programa.waitForStarted());
            QByteArray saida;
            while (!saida.contains("PortaConsola=") && programa.waitForReadyRead(3000))
                saida += programa.readAllStandardOutput();
            const auto lista = QRegularExpression(u"Pesquisa=(.*)\n"_s).match(QString::fromUtf8(saida));
            QVERIFY2(lista.hasMatch(), saida.constData());
            definir(u"Pesquisa"_s, lista.captured(1));
        };
        arrancar();
        definir(u"PesquisaDuracao"_s, u"300"_s);
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

private:
    std::unique_ptr<Instalacao> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_unidades)
#include "tst_unidades.moc"
