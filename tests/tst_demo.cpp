#include "core/datas.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"
#include "data/modMain.h"
#include "demo/captura.h"
#include "demo/gerador.h"
#include "demo/historia.h"
#include "demo/unidadesVirtuais.h"
#include "platform/onewire/DS1921.h"
#include "simulator/botao/transporteVirtual.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"
#include "tests/falhaDe.h"

#include <QDir>
#include <QProcess>

#include <cmath>

using namespace demonstracao;

namespace {

const QDateTime fim(QDate(2025, 7, 2), QTime(10, 5), Qt::UTC);

Pedido pedido(qint64 linhas, quint64 semente = 1) {
    return {linhas, semente, fim, {}};
}

QStringList coluna(Ligacao &bd, const QString &sql) {
    QStringList valores;
    Recordset rs = bd.consultar(sql);
    while (rs.avancar())
        valores.append(rs.texto(0));
    return valores;
}

const QString sqlTabelas = u"SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY 1"_s;

} // namespace

class TstDemo : public QObject {
    Q_OBJECT

    QTemporaryDir m_pasta;
    std::unique_ptr<Instalacao> m_instalacao;
    Ligacao m_bd; // one base for all that only look

    QString caminho(const QString &nome) const { return m_pasta.filePath(nome); }

private Q_SLOTS:
    void initTestCase() {
        m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma);
        const qint64 linhas = fazerBase(caminho(u"base.mdb"_s), pedido(300000)).linhas;
        QVERIFY2(std::abs(double(linhas) / 300000 - 1) < 0.15, qPrintable(QString::number(linhas)));
        m_bd.abrir(caminho(u"base.mdb"_s));
        qint64 contadas = 0;
        for (const QString &tabela : coluna(m_bd, u"SELECT name FROM sqlite_master WHERE type = 'table'"_s)) {
            const int n = contar(m_bd, tabela);
            QVERIFY2(n > 0, qPrintable(tabela));
            contadas += n;
        }
        QCOMPARE(linhas, contadas);
    }
    void cleanupTestCase() {
        m_bd.fechar();
        m_instalacao.reset();
    }

    void esquemaEIntegridade() {
        Ligacao vazia;
        m_instalacao->criarBase(caminho(u"vazia.mdb"_s));
        vazia.abrir(caminho(u"vazia.mdb"_s));
        const QString sql = u"SELECT sql FROM sqlite_master ORDER BY type, name"_s;
        QCOMPARE(coluna(m_bd, sql), coluna(vazia, sql)); // the indices too
        QCOMPARE(coluna(m_bd, u"PRAGMA journal_mode"_s), QStringList{u"wal"_s});
        QCOMPARE(coluna(m_bd, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    }

    void haUmaLinha() {
        QStringList origens = {
            // both digits on one unit
            u"Sensores a, Sensores b WHERE substr(a.PoseidonIP, 1, 1) = '1' AND b.PoseidonIP = '2' || "
            "substr(a.PoseidonIP, 2)"_s,
            u"Temperaturas WHERE Observacoes IS NULL AND Temperatura <> 'ND'"_s,
            u"Temperaturas WHERE Temperatura = 'ND'"_s,
            u"Humidade WHERE MediaSync = 'TRUE'"_s,
            // The first row's date decides whether the verified alarms are offered at all.
            u"(SELECT DataI FROM MaskListaAlarmes ORDER BY rowid LIMIT 1) WHERE DataI <> ''"_s,
            u"DS1921head WHERE Flag = 'C'"_s,
            u"DS1921head WHERE Flag = 'NC'"_s,
        };
        for (const QChar letra : u"CT%KDVA05E"_s)
            origens += u"(SELECT count(*) AS n, count(DISTINCT Seleccionado) AS s FROM Sensores WHERE substr(Tipo, -1) "
                       "= '%1') WHERE n >= 12 AND s = 2"_s.arg(letra);
        for (const QChar tipo : u"C%VA"_s)
            origens += u"Sensores WHERE Tipo = 'P 1250"_s + tipo + u'\'';
        for (const char *tabela : {"Temperaturas", "Humidade", "Pressao", "Pontoorvalho", "SensUI_Leituras", "Medias"})
            for (const char *padrao : {"[0-9-]*XXX[0-9-]*", "[0-9-]*XXXNA", "NAXXX[0-9-]*", "NAXXXNA"})
                origens += QString::asprintf("%s WHERE Observacoes GLOB '%s'", tabela, padrao);
        for (const QString &origem : std::as_const(origens))
            QVERIFY2(!coluna(m_bd, u"SELECT 1 FROM %1 LIMIT 1"_s.arg(origem)).isEmpty(), qPrintable(origem));
    }

    void naoHaLinhas_data() {
        const Tabela<QString> caso("origem");
        caso("addresses outside this machine",
             u"(SELECT PoseidonIP AS i FROM Poseidons UNION SELECT substr(PoseidonIP, 2) FROM Sensores UNION SELECT IP "
             "FROM MaskListaAlarmes) WHERE i NOT LIKE '127.%'"_s);
        caso("short IDs", u"Sensores WHERE length(SensorID) <> 16"_s);
        caso("sensor without a group", u"Sensores WHERE Grupo NOT IN (SELECT codGrupo FROM Grupos)"_s);
        caso("limits in a gap", u"Temperaturas WHERE Temperatura = 'ND' AND Observacoes IS NOT NULL"_s);
        caso("averages of humidity of other units",
             u"Humidade, Sensores WHERE SensorID = Sensor AND MediaSync = 'TRUE' AND PoseidonIP NOT LIKE '1%'"_s);
        caso("bad dates", u"Temperaturas WHERE Data IS NOT datetime(Data)"_s);
        caso("pressure", u"Pressao WHERE Leitura <> 'ND' AND Leitura NOT BETWEEN 98 AND 105"_s);
        caso("humidity", u"Humidade WHERE Percentagem <> 'ND' AND Percentagem NOT BETWEEN 0 AND 100"_s);
        caso("dew point above the air's temperature",
             u"Pontoorvalho o JOIN Temperaturas t ON substr(o.Data, 1, 16) = substr(t.Data, 1, 16) WHERE o.NomeSensor "
             "= 'PO Câmara Frio 1' AND t.NomeSensor = 'Câmara Frio 1' AND o.Leitura <> 'ND' AND t.Temperatura <> 'ND' "
             "AND o.Leitura > t.Temperatura"_s);
        caso("inputs opened twice", u"REGISTO_Inputs GROUP BY DispositivoIP, InputNum HAVING abs(sum(Estado = 'True') "
                                    "- sum(Estado = 'False')) > 1"_s);
        caso("condition that ends before its start", u"REGISTO_C_Inputs WHERE DataOFF < DataON"_s);
        caso("condition of a sensor, too", u"REGISTO_C_Sensores WHERE DataOFF < DataON"_s);
        caso("alarm, too", u"MaskListaAlarmes WHERE DataF < DataI OR VerefData < DataF"_s);
        caso("false alarm of a button",
             u"DS1921 WHERE (Alarm = 'TRUE') <> (Temperatura >= Max OR Temperatura <= Min)"_s);
    }
    void naoHaLinhas() {
        QFETCH(const QString, origem);
        QVERIFY(coluna(m_bd, u"SELECT 1 FROM %1 LIMIT 1"_s.arg(origem)).isEmpty());
    }

    // Every sensor at the addresses of the virtual units is a channel that reads on as the history does, within limits
    // that stay as they are; what no log can hold hangs elsewhere.
    void unidadesContinuamAHistoria() {
        const QStringList argumentos = argumentosDasUnidades(1).split(u'\n');
        QVERIFY(argumentos.contains(u"--clima=1"_s));
        const Leituras leitura = leiturasDasUnidades(1);
        int canais = 0, comparadas = 0;
        for (const Sensor &s : sensores(1)) {
            const QString endereco = s.PoseidonIP.mid(1);
            if (!unidadeVirtual(endereco))
                continue;
            ++canais;
            const QStringList canal = argumentos.filter(u"--canal=%1;%2;"_s.arg(s.ID, s.Descricao));
            QVERIFY2(canal.size() == 1, qPrintable(s.Descricao));
            const QString tabela = s.mede->grandeza.leituras.toString();
            if (s.mede->importada)
                QCOMPARE(coluna(m_bd, u"SELECT coalesce(Minimo, MinimoHum) || '|' || coalesce(Maximo, MaximoHum) FROM "
                                      "Calibracoes WHERE SondaID = '%1'"_s.arg(s.SensorID)),
                         QStringList(u"%1|%2"_s.arg(canal[0].section(u';', 5, 5).toDouble())
                                         .arg(canal[0].section(u';', 6, 6).toDouble())));
            Recordset rs = m_bd.consultar(
                u"SELECT * FROM %1 WHERE Sensor = ? ORDER BY rowid DESC LIMIT 50"_s.arg(tabela), {s.SensorID});
            while (rs.avancar()) {
                if (!rs.eNumero(3))
                    continue;
                const auto t = qint64(rs.segundos(0));
                const std::optional<double> lido = leitura(endereco, s.ID, t - t % 300);
                QCOMPARE(lido.has_value(), s.activo);
                if (!lido)
                    continue;
                const double parte = (*lido - s.SensUIMin) / (s.SensUIMax - s.SensUIMin);
                const double valor =
                    s.escala ? s.escala->minimo + parte * (s.escala->maximo - s.escala->minimo) : *lido;
                QVERIFY2(std::fabs(valor - rs.real(3)) < 0.051, qPrintable(s.Descricao + rs.texto(0)));
                ++comparadas;
            }
        }
        QVERIFY(canais > 20 && comparadas > 20 * 30);
    }

    void mesmoPedidoDaOMesmo() {
        const auto bytes = [&](const QString &nome, quint64 semente) {
            (void)fazerBase(caminho(nome), pedido(30000, semente));
            return Instalacao::lerFicheiro(caminho(nome));
        };
        const QByteArray a = bytes(u"a.mdb"_s, 1);
        QVERIFY(!a.isEmpty() && a == bytes(u"b.mdb"_s, 1));
        QVERIFY(a != bytes(u"c.mdb"_s, 2));
    }

    // Past thirteen months for all sensors the histories grow; below it the main ones keep theirs.
    void prazosCrescemComOPedido() {
        const std::vector<Sensor> todos = sensores(1);
        QCOMPARE(prazosPara(0, todos).diasPrincipais, 395.0);
        QCOMPARE(prazosPara(10'000'000, todos).diasPrincipais, 395.0);
        QVERIFY(prazosPara(10'000'000, todos).diasOutros > prazosPara(0, todos).diasOutros);
        const Prazos trinta = prazosPara(30'000'000, todos);
        QVERIFY(trinta.diasPrincipais > 2 * 395 && trinta.diasOutros == trinta.diasPrincipais);
    }

    // The wording of an alarm says by how much the stored limit was passed, and no reading beyond it lacks one.
    void alarmesDizemAVerdade() {
        Recordset rs = m_bd.consultar(u"SELECT Temperatura, Observacoes, flag FROM Temperaturas WHERE Observacoes LIKE "
                                      "'%XXX%' AND Temperatura <> 'ND'"_s);
        int alarmes = 0;
        while (rs.avancar()) {
            const double v = rs.real(0);
            const QStringList limites = rs.texto(1).split(u"XXX"_s);
            const QString nota = rs.texto(2);
            const bool acima = limites[0] != u"NA" && v > modDoubleTratamento::TextoParaDouble(limites[0]);
            const bool abaixo = limites[1] != u"NA" && v < modDoubleTratamento::TextoParaDouble(limites[1]);
            if (nota.startsWith(u"Máximo de  "_s) || nota.startsWith(u"Mínimo de  "_s)) {
                ++alarmes;
                QVERIFY(acima || abaixo);
                const double excesso = v - modDoubleTratamento::TextoParaDouble(limites[acima ? 0 : 1]);
                QVERIFY(std::fabs(excesso - modDoubleTratamento::TextoParaDouble(nota.mid(11))) < 0.006);
            } else if (acima || abaixo) {
                QVERIFY2(nota.trimmed().size() > 3, qPrintable(nota)); // somebody's note stands in its place
            }
        }
        QVERIFY(alarmes > 0);
    }

    void mediasSaoDasLeituras() {
        const QString id = coluna(m_bd, u"SELECT SensorID FROM Sensores WHERE Nlinha = 1"_s).constFirst();
        Recordset medias =
            m_bd.consultar(u"SELECT Data, Temperatura FROM Medias WHERE Sensor = ? ORDER BY Data"_s, {id});
        Recordset leituras = m_bd.consultar(
            u"SELECT Data, Temperatura FROM Temperaturas WHERE Sensor = ? AND Temperatura <> 'ND' ORDER BY Data"_s,
            {id});
        int comparadas = 0;
        while (medias.avancar()) {
            double soma = 0;
            for (int i = 0; i < 6; ++i) {
                QVERIFY(leituras.avancar());
                soma += leituras.real(1);
            }
            QCOMPARE(medias.texto(0), leituras.texto(0));
            QVERIFY(std::fabs(medias.real(1) - soma / 6) < 0.0051);
            ++comparadas;
        }
        QVERIFY(comparadas > 20);
    }

    void naoDestroiNemDeixaMeias() {
        Instalacao::escreverFicheiro(caminho(u"ocupado.mdb"_s), "meu");
        QVERIFY_THROWS_EXCEPTION(Falha, (void)fazerBase(caminho(u"ocupado.mdb"_s), pedido(30000)));
        QCOMPARE(Instalacao::lerFicheiro(caminho(u"ocupado.mdb"_s)), "meu");
        QVERIFY_THROWS_EXCEPTION(Falha, (void)fazerBase(caminho(u"nada/base.mdb"_s), pedido(30000)));
        Pedido interrompido = pedido(30000);
        interrompido.aoAvancar = [](const QString &oque) {
            if (oque == u"Pressao")
                throw Falha(erros::chamadaInvalida, u"basta"_s);
        };
        QVERIFY_THROWS_EXCEPTION(Falha, (void)fazerBase(caminho(u"meio.mdb"_s), interrompido));
        QVERIFY(QDir(m_pasta.path()).entryList({u"meio*"_s, u"*.novo*"_s}).isEmpty());
    }

    // The open missions of the database are in the drawer's buttons, sample by sample.
    void oProgramaAbreAInstalacao() {
        Instalacao outra(Instalacao::Base::Nenhuma);
        const QString pasta = outra.ficheiro(u"demonstração nova"_s);
        (void)fazerInstalacao(pasta, pedido(30000, 2));
        (void)fazerInstalacao(pasta, pedido(30000)); // once more, over the first
        estado().PastaPrograma = pasta;
        QVERIFY(modMain::carregaGlobaisBD());
        QCOMPARE(contar(cnBD(), u"Sensores"_s), contar(m_bd, u"Sensores"_s));
        const auto definicao = [](const QString &seccao, const QString &chave, const QString &ficheiro = u"Vistrel"_s) {
            return modINI::GetSetting(ficheiro, seccao, chave);
        };
        QCOMPARE(definicao(u"Lingua"_s, u"3"_s), u"Čeština"_s);
        QCOMPARE(definicao(u"Lingua"_s, u"L"_s + definicao(u"Lingua"_s, u"ACT"_s)), u"PT"_s);
        for (const QString &endereco : definicao(u"D2251"_s, u"Pesquisa"_s).split(u' '))
            QVERIFY2(endereco.startsWith(u"127."_s), qPrintable(endereco));
        QVERIFY(QDir(definicao(u"JPG"_s, u"MAIN"_s)).exists());

        simulador::oferecerGavetas();
        const simulador::Gaveta gaveta(pasta + u"/gaveta"_s);
        QVERIFY(gaveta.nomes().size() >= 6);
        DS1921 controlo;
        controlo.PortaTipo = definicao(u"LIAGACAOHARDWARE"_s, u"PortType"_s, u"Kelvark"_s).toShort();
        controlo.PortaNumero = definicao(u"LIAGACAOHARDWARE"_s, u"PortNum"_s, u"Kelvark"_s).toShort();
        QStringList tipos;
        int emMissao = 0, comparadas = 0;
        for (const QString &nome : gaveta.nomes()) {
            if (nome == u"adaptador")
                continue;
            QVERIFY(gaveta.por({u"adaptador"_s, nome}));
            controlo.ROMID.clear();
            QCOMPARE(controlo.ActualizarEstado(), qint16(1));
            tipos.append(controlo.TipoRegistador);
            std::vector<DS1921::Amostra> amostras;
            const qint16 n = controlo.ContarAmostras(amostras);
            emMissao += controlo.MissaoEmCurso;
            QCOMPARE(n > 0, controlo.MissaoEmCurso);
            Recordset r = cnBD().consultar(
                u"SELECT s.Data, s.Temperatura FROM DS1921 s JOIN DS1921head h ON h.LoggerID = s.LoggerID AND "
                "h.Nomelogger = s.Nomelogger AND h.DescricaoMissao = s.DescricaoMissao AND h.NMissao = s.NMissao "
                "WHERE h.Flag = 'NC' AND s.LoggerID = ? ORDER BY s.Data"_s,
                {controlo.ROMID});
            const double calibracao = nome == u"pescado" ? -0.5 : nome == u"sangue" ? 0.5 : 0.0;
            for (size_t i = 0; r.avancar(); ++i) {
                QVERIFY(i < amostras.size());
                QCOMPARE(r.texto(0), datas::textoBD(amostras[i].Data));
                QCOMPARE(r.real(1), amostras[i].Temperatura + calibracao);
                ++comparadas;
            }
        }
        QVERIFY(tipos.contains(u"G"_s) && tipos.contains(u"H"_s) && tipos.contains(u"Z"_s));
        QCOMPARE(emMissao, 4);
        QVERIFY(comparadas > 1000);
    }

    void capturaEscreveEnquantoSeLe() {
        const QString base = caminho(u"captura.mdb"_s);
        (void)fazerBase(base, pedido(30000));
        Ligacao leitor;
        leitor.abrir(base);
        const auto leituras = [&] { return contar(leitor, u"Temperaturas"_s) + contar(leitor, u"Humidade"_s); };
        const int antes = leituras();
        Recordset aMeio = leitor.consultar(u"SELECT * FROM Temperaturas"_s);
        QVERIFY(aMeio.avancar());
        Captura captura(base, 1);
        QCOMPARE(captura.sensores(), coluna(leitor, u"SELECT SensorID FROM Sensores WHERE Seleccionado = 'SIM' AND "
                                                    "substr(Tipo, -1) IN ('C', 'T', '0', '5', 'E', '%')"_s)
                                         .size());
        for (int i = 0; i < 100; ++i)
            captura.passo(fim.addSecs(i));
        QCOMPARE(captura.leituras(), 100);
        QVERIFY(captura.alarmes() > 0);
        aMeio.fechar();
        QCOMPARE(leituras(), antes + 100);
        QCOMPARE(coluna(leitor, u"SELECT Temperatura = UltTemp FROM Temperaturas t JOIN Sensores ON SensorID = Sensor "
                                "ORDER BY t.rowid DESC LIMIT 1"_s),
                 QStringList{u"1"_s});
        const QString recentes = u" WHERE Data >= '%1'"_s.arg(datas::textoBD(fim));
        QCOMPARE(contar(leitor, u"Alarmes"_s + recentes) + contar(leitor, u"AlarmesHum"_s + recentes),
                 captura.alarmes());
    }

    void companheiroAcabaQuandoMandado() {
        const QString base = caminho(u"companheiro.mdb"_s);
        (void)fazerBase(base, pedido(30000));
        QProcess processo;
        processo.start(QStringLiteral(KELVARK_CAPTURA), {u"--intervalo"_s, u"5"_s, base});
        QVERIFY(processo.waitForStarted());
        Ligacao leitor;
        leitor.abrir(base);
        const QString recentes = u"Temperaturas WHERE Data > '%1'"_s.arg(datas::textoBD(fim));
        QTRY_VERIFY_WITH_TIMEOUT(contar(leitor, recentes) >= 10, 20000);
        processo.terminate();
        QVERIFY(processo.waitForFinished(10000));
        QCOMPARE(processo.exitStatus(), QProcess::NormalExit);
        QCOMPARE(processo.exitCode(), 0);
        QVERIFY(processo.readAllStandardOutput().contains(", 0 falhas"));
        QCOMPARE(coluna(leitor, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    }

    void companheiroRecusaBaseEmFalta() {
        QProcess processo;
        processo.start(QStringLiteral(KELVARK_CAPTURA), {caminho(u"nao-ha.mdb"_s)});
        QVERIFY(processo.waitForFinished(10000));
        QCOMPARE(processo.exitCode(), 1);
        QVERIFY(processo.readAllStandardError().contains("nao-ha.mdb"));
        QVERIFY(!QFile::exists(caminho(u"nao-ha.mdb"_s)));
    }
};

QTEST_GUILESS_MAIN(TstDemo)
#include "tst_demo.moc"
