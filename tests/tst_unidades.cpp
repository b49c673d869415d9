#include "platform/unit/Consola.h"
#include "platform/unit/KVsocket.h"
#include "platform/unit/UdpSetup.h"
#include "platform/unit/protocolo.h"
#include "platform/unit/rede.h"
#include "platform/unit/telnet.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/unidadesDeTeste.h"

#include <QNetworkDatagram>
#include <QTcpSocket>
#include <QUdpSocket>

using simulador::Defeito;
using simulador::Defeitos;

namespace {

// A search that asks units with these faults, at 127.0.0.2 and up, as the settings tell it to.
struct Busca {
    Busca(const QList<Defeitos> &defeitos, int ms) {
        QStringList lista;
        for (const Defeitos &d : defeitos) {
            unidades.push_back(ligarUnidade(definicao(d, 200, u"127.0.0.%1"_s.arg(unidades.size() + 2))));
            lista += unidades.back()->endereco() + u':' + QString::number(unidades.back()->portaPesquisa());
        }
        definir(u"Pesquisa"_s, lista.join(u','));
        definir(u"PesquisaDuracao"_s, QString::number(ms));
    }
    // The addresses found.
    QStringList procurar() {
        objecto->pesquisar();
        if (!objecto->aPesquisar() || !fim.wait(3000))
            return {u"no end"_s};
        QStringList enderecos;
        for (int i = 0; objecto->seleccionar(i); ++i)
            enderecos.append(objecto->endereco());
        enderecos.sort();
        return enderecos;
    }
    std::vector<std::unique_ptr<simulador::Unidade>> unidades;
    std::unique_ptr<UdpSetup> objecto = novoUdpSetup();
    QSignalSpy fim{objecto.get(), &UdpSetup::OnSearch};
};

} // namespace

class tst_unidades : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma); }
    void cleanup() { m_instalacao.reset(); }

    void lista() {
        const rede::ListaDePesquisa lida =
            rede::lerLista(u"127.0.0.2:5000, 127.0.0.3;127.0.0.4 127.0.0.3 " // one twice
                           "127.1 10 0x7f000001 10.0.0 10.0.0.256 "          // short forms go nowhere
                           "casa ::1 10.0.0.1:0 10.0.0.1:70000 10.0.0.1:"_s);
        QStringList destinos;
        for (const rede::Destino &d : lida.destinos)
            destinos.append(d.endereco.toString() + u':' + QString::number(d.porta));
        QCOMPARE(destinos, QStringList({u"127.0.0.2:5000"_s, u"127.0.0.3:22510"_s, u"127.0.0.4:22510"_s}));
        QCOMPARE(lida.invalidos.size(), 10);
    }

    void listaDasDefinicoes() {
        QVERIFY(!rede::listaDasDefinicoes().definida);
        definir(u"Pesquisa"_s, {});
        QVERIFY(rede::listaDasDefinicoes().definida); // asked to search nowhere, which is not everywhere
        // The store gives 512 characters; the cut must not turn 10.0.0.25 into 10.0.0.2.
        definir(u"Pesquisa"_s, u"10.0.0.1"_s.leftJustified(504, u',') + u"10.0.0.25"_s);
        QCOMPARE(rede::listaDasDefinicoes().destinos.size(), 1);
        QCOMPARE(rede::portaDaConsola(), quint16(99));
        definir(u"PortaConsola"_s, u"2099"_s);
        QCOMPARE(rede::portaDaConsola(), quint16(2099));
        definir(u"PortaConsola"_s, u"99999"_s);
        QCOMPARE(rede::portaDaConsola(), quint16(99));
    }

    void destinosERede_data() {
        // lista: "-": none; destinos: "to from local"
        const Tabela<QString, QList<rede::Interface>, QStringList, bool> caso("lista", "interfaces", "destinos",
                                                                              "ligada");
        const QHostAddress local(u"10.0.0.5"_s);
        const rede::Interface lo{u"lo"_s, true, true, false, {QHostAddress(u"127.0.0.1"_s)}};
        const rede::Interface a{u"a"_s, true, false, true, {local}};
        const rede::Interface b{u"b"_s, true, false, true, {QHostAddress(u"10.1.0.5"_s), QHostAddress(u"10.2.0.5"_s)}};
        caso("none: every interface that is up", u"-"_s, {lo, a, b},
             {u"255.255.255.255 10.0.0.5"_s, u"255.255.255.255 10.1.0.5"_s, u"255.255.255.255 10.2.0.5"_s}, true);
        caso("none: one that is down", u"-"_s, {lo, {u"a"_s, false, false, true, {local}}}, {}, false);
        caso("none: no broadcast there", u"-"_s, {{u"p"_s, true, false, false, {local}}}, {}, true);
        caso("up without address", u"-"_s, {{u"a"_s, true, false, true, {}}}, {}, false);
        caso("loopback list", u"127.0.0.2"_s, {lo}, {u"127.0.0.2 "_s}, true);
        caso("mixed list", u"127.0.0.2 10.0.0.9"_s, {lo}, {u"127.0.0.2 "_s, u"10.0.0.9 "_s}, false);
        caso("empty list", u""_s, {lo, a}, {}, true);
    }
    void destinosERede() {
        QFETCH(QString, lista);
        QFETCH(QList<rede::Interface>, interfaces);
        const rede::ListaDePesquisa lida = lista == u"-" ? rede::ListaDePesquisa() : rede::lerLista(lista);
        QStringList destinos;
        for (const rede::Destino &d : rede::destinos(lida, interfaces))
            destinos.append(d.endereco.toString() + u' ' + d.origem.toString());
        QTEST(destinos, "destinos");
        QTEST(rede::redeLigada(lida, interfaces), "ligada");
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
        Busca busca({{},
                     {Defeito::BuscaDupla},
                     {Defeito::BuscaMalformada},
                     {Defeito::BuscaGrande},
                     {Defeito::BuscaMuda},
                     {Defeito::BuscaTardia}},
                    500);
        const QStringList encontradas{u"127.0.0.2"_s, u"127.0.0.3"_s, u"127.0.0.7"_s};
        QCOMPARE(busca.procurar(), encontradas);
        QCOMPARE(busca.procurar(), encontradas); // the second search begins anew
        UdpSetup &b = *busca.objecto;
        QCOMPARE(b.nDispositivos(), 3);
        for (int i = 0; b.seleccionar(i) && b.endereco() != u"127.0.0.2"; ++i) {
        }
        const simulador::Unidade &u = *busca.unidades[0];
        QCOMPARE(QStringList({b.mac(), b.nome(), b.firmware()}),
                 QStringList({u.definicao().mac, u.definicao().nome, u.definicao().firmware}));
        QCOMPARE(b.modelo(), qint16(4));
        QCOMPARE(b.porta(), u.portaWeb());
        QVERIFY(!b.seleccionar(3) && b.mac().isEmpty());
    }

    void pesquisaRespeitaALista() {
        Busca busca({{}, {}}, 200);
        definir(u"Pesquisa"_s, u"127.0.0.2:%1"_s.arg(busca.unidades[0]->portaPesquisa()));
        QCOMPARE(busca.procurar(), QStringList(u"127.0.0.2"_s));
        QCOMPARE(busca.unidades[0]->perguntas(), 3); // asked again, in case a datagram was lost
        QCOMPARE(busca.unidades[1]->perguntas(), 0);
        busca.objecto->pesquisar();
        busca.objecto->parar();
        QVERIFY(!busca.fim.wait(300));
    }

    void pesquisaTardia_data() {
        const Tabela<bool, QStringList> caso("tardia", "achadas");
        caso("in time", false, {u"127.0.0.2"_s});
        caso("to the search before", true, {});
    }
    // A unit that answers the second search of the two: with the mark of that one, or still with that of the first.
    void pesquisaTardia() {
        QFETCH(const bool, tardia);
        QUdpSocket unidade;
        QVERIFY(unidade.bind(QHostAddress(u"127.0.0.2"_s), 0));
        QByteArray primeira;
        int respondidas = 0;
        connect(&unidade, &QUdpSocket::readyRead, this, [&] {
            while (unidade.hasPendingDatagrams()) {
                const QNetworkDatagram pergunta = unidade.receiveDatagram();
                const auto pedido = protocolo::kfind::lerPedido(pergunta.data());
                if (primeira.isEmpty())
                    primeira = pedido->marca;
                if (pedido->marca == primeira)
                    continue;
                UdpSetup::Dispositivo eu;
                eu.mac = u"00:0A:59:00:00:01"_s;
                eu.porta = 80;
                unidade.writeDatagram(protocolo::kfind::resposta(eu, tardia ? primeira : pedido->marca),
                                      pergunta.senderAddress(), quint16(pergunta.senderPort()));
                ++respondidas;
            }
        });
        Busca busca({}, 300);
        busca.objecto->definirDestinos({{unidade.localAddress(), unidade.localPort(), {}}});
        QCOMPARE(busca.procurar(), QStringList());
        QTEST(busca.procurar(), "achadas");
        QVERIFY(respondidas > 0);
    }

    void pesquisaInundada() {
        Busca busca({{Defeito::BuscaInundacao}, {}}, 600);
        const QStringList encontradas = busca.procurar();
        QCOMPARE(encontradas.count(u"127.0.0.3"_s), 1);
        QCOMPARE(encontradas.count(u"127.0.0.2"_s), 32);
    }

    void pesquisaDestruidaNoTratamento() {
        for (const bool falha : {false, true}) {
            auto busca = novoUdpSetup();
            int codigo = 0;
            busca->definirDestinos(falha ? QList<rede::Destino>()
                                         : QList<rede::Destino>{{QHostAddress(u"127.0.0.2"_s), 9, {}}});
            busca->definirDuracao(50);
            connect(busca.get(), &UdpSetup::OnSearch, this, [&] { busca.reset(); });
            connect(busca.get(), &UdpSetup::OnError, this, [&](int c) {
                codigo = c;
                busca.reset();
            });
            busca->pesquisar();
            QVERIFY(busca && busca->aPesquisar() != falha); // never from inside the call
            QTRY_VERIFY_WITH_TIMEOUT(!busca, 1000);
            QCOMPARE(codigo, falha ? int(UdpSetup::semDestinos) : 0);
        }
    }

    void telnet() {
        // Options, a command, byte 255, a subnegotiation with one inside, an unfinished option.
        const auto bytes = QByteArray::fromHex("fffb01 61 fffd03 62 fff1 63 ffff 64 fffa1801ffff61fff0 65 fffb");
        const QByteArray texto = "abc\xFF"
                                 "de";
        QCOMPARE(Telnet().limpar(bytes), texto);
        Telnet aosBocados;
        QByteArray junto;
        for (const char c : bytes)
            junto += aosBocados.limpar(QByteArray(1, c));
        QCOMPARE(junto, texto);
    }

    void consolaSemOpcoesDeTelnet() {
        const auto unidade = ligarUnidade({Defeito::ConsolaOpcoes});
        auto consola = novaConsola();
        QString texto;
        connect(consola.get(), &Consola::DataArrival, this, [&] { texto += consola->GetData(); });
        consola->Connect(u"127.0.0.2"_s, unidade->portaConsola());
        QCOMPARE(consola->State(), int(Consola::aLigar));
        QTRY_VERIFY(texto.contains(u"Press Enter"_s));
        QVERIFY(!texto.contains(QChar(0xFF)));
        consola->Close();
        QCOMPARE(consola->State(), int(Consola::fechada));
        QVERIFY(!consola->SendData(u"x"_s));

        connect(consola.get(), &Consola::DataArrival, this, [&] { consola.reset(); });
        consola->Connect(u"127.0.0.2"_s, unidade->portaConsola());
        QTRY_VERIFY(!consola);
        deixarPassar(20);
    }

    void consolaFalha() {
        QTcpServer servidor;
        servidor.setListenBacklogSize(1);
        QVERIFY(servidor.listen(QHostAddress(u"127.0.0.7"_s)));
        servidor.pauseAccepting(); // the queue fills, later connections wait for ever
        std::array<QTcpSocket, 8> ocupam;
        for (QTcpSocket &s : ocupam)
            s.connectToHost(u"127.0.0.7"_s, servidor.serverPort());
        deixarPassar(50);
        const auto consola = novaConsola();
        consola->definirTempo(200);
        QSignalSpy erro(consola.get(), &Consola::Error);
        for (const int numero : {int(Consola::erroTempo), int(Consola::erroRecusada)}) {
            consola->Connect(u"127.0.0.7"_s, numero == Consola::erroTempo ? servidor.serverPort() : portaLivre());
            QVERIFY(erro.wait());
            QCOMPARE(erro.last().at(0).toInt(), numero);
            QVERIFY(!erro.last().at(1).toString().isEmpty());
            QCOMPARE(consola->State(), 0);
        }
    }

    // Started as a user starts it: it tells where its unit is, and how a search finds it.
    void programaDasUnidades() {
        QProcess programa;
        programa.start(QStringLiteral(KELVARK_UNIDADES),
                       {u"--porta-web=0"_s, u"--porta-consola=0"_s, u"--porta-pesquisa=0"_s, u"--unidade"_s,
                        u"127.0.0.12"_s, u"--estado"_s, m_instalacao->ficheiro(u"estado"_s), u"--nome"_s,
                        u"Câmara Fria"_s, u"--registos=10"_s});
        QVERIFY(programa.waitForStarted());
        QByteArray saida;
        while (!saida.contains("PortaConsola=") && programa.waitForReadyRead(3000))
            saida += programa.readAllStandardOutput();
        static const QRegularExpression forma(
            uR"(Câmara Fria: http://127.0.0.12:(\d+)/ .* registos 10\n.*Pesquisa=127.0.0.12:\d+\n)"_s,
            QRegularExpression::DotMatchesEverythingOption);
        const auto dito = forma.match(QString::fromUtf8(saida));
        QVERIFY2(dito.hasMatch(), saida.constData());
        QVERIFY(novoKVsocket()
                    ->GET(u"http://127.0.0.12/setup.xml"_s, 2000, dito.captured(1).toUShort())
                    .contains(u"Câmara Fria"_s));
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
