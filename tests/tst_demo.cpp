#include "core/datas.h"
#include "core/falha.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"
#include "data/ligacao.h"
#include "data/modMain.h"
#include "data/recordset.h"
#include "demo/captura.h"
#include "demo/gerador.h"
#include "demo/historia.h"
#include "platform/onewire/DS1921.h"
#include "simulator/botao/transporteVirtual.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

#include <QCryptographicHash>
#include <QDir>
#include <QProcess>
#include <QTest>

#include <cmath>

using namespace demonstracao;

namespace {

const QDateTime fim(QDate(2025, 7, 2), QTime(10, 5), Qt::UTC);

Pedido pedido(qint64 linhas, quint64 semente = 1) {
    Pedido p;
    p.linhas = linhas;
    p.semente = semente;
    p.fim = fim;
    return p;
}

QStringList coluna(Ligacao &bd, const QString &sql) {
    QStringList valores;
    Recordset rs = bd.consultar(sql);
    while (rs.avancar())
        valores.append(rs.texto(0));
    return valores;
}

const QString sqlTabelas = u"SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY 1"_s;

// Everything stored, in its order.
QByteArray resumo(const QString &caminho) {
    Ligacao bd;
    bd.abrir(caminho);
    QCryptographicHash conta(QCryptographicHash::Sha256);
    for (const QString &tabela : coluna(bd, sqlTabelas)) {
        conta.addData(tabela.toUtf8());
        Recordset rs = bd.consultar(u"SELECT * FROM "_s + tabela + u" ORDER BY rowid"_s);
        while (rs.avancar())
            for (int c = 0; c < rs.colunas(); ++c)
                conta.addData(rs.nulo(c) ? QByteArray("\1") : rs.texto(c).toUtf8() + '\0');
    }
    return conta.result();
}

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
        QVERIFY(fazerBase(caminho(u"base.mdb"_s), pedido(300000)).linhas > 0);
        m_bd.abrir(caminho(u"base.mdb"_s));
    }
    void cleanupTestCase() {
        m_bd.fechar();
        m_instalacao.reset();
    }

    void todasAsTabelasTemLinhas() {
        for (const QString &tabela : coluna(m_bd, sqlTabelas))
            QVERIFY2(!coluna(m_bd, u"SELECT 1 FROM %1 LIMIT 1"_s.arg(tabela)).isEmpty(), qPrintable(tabela));
    }

    void indicesDoEsquemaEstaoTodos() {
        Ligacao vazia;
        m_instalacao->criarBase(caminho(u"vazia.mdb"_s));
        vazia.abrir(caminho(u"vazia.mdb"_s));
        const QString sql = u"SELECT sql FROM sqlite_master ORDER BY type, name"_s;
        QCOMPARE(coluna(m_bd, sql), coluna(vazia, sql));
        QCOMPARE(coluna(m_bd, u"PRAGMA journal_mode"_s), QStringList{u"wal"_s});
        QCOMPARE(coluna(m_bd, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    }

    void dozeSensoresDeCadaTipo() {
        for (const QChar letra : u"CT%KDVA05E"_s) {
            const QStringList estados =
                coluna(m_bd, u"SELECT Seleccionado FROM Sensores WHERE substr(Tipo, -1) = '%1'"_s.arg(letra));
            QVERIFY2(estados.size() >= 12, qPrintable(QString(letra)));
            QVERIFY(estados.contains(u"SIM"_s) && estados.contains(u"NAO"_s));
        }
        for (const QString &ip : coluna(m_bd, u"SELECT PoseidonIP FROM Poseidons UNION SELECT substr(PoseidonIP, 2) "
                                              "FROM Sensores UNION SELECT IP FROM MaskListaAlarmes"_s))
            QVERIFY2(ip.startsWith(u"127."_s), qPrintable(ip));
    }

    // What some row must show, and what none may.
    void conteudo_data() {
        const Tabela<bool, QString> caso("ha", "sql");
        for (const char *tipo : {"C", "%", "V", "A"})
            caso(tipo, true, u"SELECT 1 FROM Sensores WHERE Tipo = 'P 1250%1'"_s.arg(QLatin1StringView(tipo)));
        caso("both digits on one unit", true,
             u"SELECT 1 FROM Sensores a, Sensores b WHERE substr(a.PoseidonIP, 1, 1) = '1' AND b.PoseidonIP = '2' || "
             "substr(a.PoseidonIP, 2)"_s);
        caso("short IDs", false, u"SELECT 1 FROM Sensores WHERE length(SensorID) <> 16"_s);
        caso("sensor without a group", false,
             u"SELECT 1 FROM Sensores WHERE Grupo NOT IN (SELECT codGrupo FROM Grupos)"_s);
        for (const char *tabela : {"Temperaturas", "Humidade", "Pressao", "Pontoorvalho", "SensUI_Leituras", "Medias"})
            for (const char *padrao : {"[0-9-]*XXX[0-9-]*", "[0-9-]*XXXNA", "NAXXX[0-9-]*", "NAXXXNA"})
                QTest::addRow("%s %s", tabela, padrao) << true
                                                       << u"SELECT 1 FROM %1 WHERE Observacoes GLOB '%2'"_s.arg(
                                                              QLatin1StringView(tabela), QLatin1StringView(padrao));
        caso("no limits", true, u"SELECT 1 FROM Temperaturas WHERE Observacoes IS NULL AND Temperatura <> 'ND'"_s);
        caso("gaps", true, u"SELECT 1 FROM Temperaturas WHERE Temperatura = 'ND'"_s);
        caso("limits in a gap", false,
             u"SELECT 1 FROM Temperaturas WHERE Temperatura = 'ND' AND Observacoes IS NOT NULL"_s);
        caso("averages of humidity", true, u"SELECT 1 FROM Humidade WHERE MediaSync = 'TRUE'"_s);
        caso(
            "averages of humidity of other units", false,
            u"SELECT 1 FROM Humidade, Sensores WHERE SensorID = Sensor AND MediaSync = 'TRUE' AND PoseidonIP NOT LIKE '1%'"_s);
        caso("bad dates", false, u"SELECT 1 FROM Temperaturas WHERE Data IS NOT datetime(Data)"_s);
        caso("pressure", false, u"SELECT 1 FROM Pressao WHERE Leitura <> 'ND' AND Leitura NOT BETWEEN 98 AND 105"_s);
        caso("humidity", false,
             u"SELECT 1 FROM Humidade WHERE Percentagem <> 'ND' AND Percentagem NOT BETWEEN 0 AND 100"_s);
        caso("inputs opened twice", false,
             u"SELECT 1 FROM REGISTO_Inputs GROUP BY DispositivoIP, InputNum HAVING abs(sum(Estado = 'True') - "
             "sum(Estado = 'False')) > 1"_s);
        caso("ends before its start", false,
             u"SELECT 1 FROM REGISTO_C_Inputs WHERE DataOFF < DataON UNION ALL SELECT 1 FROM REGISTO_C_Sensores WHERE "
             "DataOFF < DataON UNION ALL SELECT 1 FROM MaskListaAlarmes WHERE DataF < DataI OR VerefData < DataF"_s);
        // The first row's date decides whether the verified alarms are offered at all.
        caso("verified alarms", true,
             u"SELECT 1 FROM (SELECT DataI FROM MaskListaAlarmes ORDER BY rowid LIMIT 1) WHERE DataI <> ''"_s);
        caso("false alarm of a button", false,
             u"SELECT 1 FROM DS1921 WHERE (Alarm = 'TRUE') <> (Temperatura >= Max OR Temperatura <= Min)"_s);
        caso("concluded mission", true, u"SELECT 1 FROM DS1921head WHERE Flag = 'C'"_s);
        caso("mission in progress", true, u"SELECT 1 FROM DS1921head WHERE Flag = 'NC'"_s);
    }
    void conteudo() {
        QFETCH(const QString, sql);
        QTEST(!coluna(m_bd, sql + u" LIMIT 1"_s).isEmpty(), "ha");
    }

    void nomesSaoUnicosNaInstalacao() {
        const QString fontes = u"Damocles.Nome DamoclesInputs.Descricao DamoclesOutputs.Descricao Grupos.Descricao "
                               "IOcontrollers.Descricao IOcontrollersInputs.Descricao IOcontrollersOutputs.Descricao "
                               "PortBox.Descricao PoseidonInputs.Descricao PoseidonInputsSpider.Descricao "
                               "PoseidonOutputs.Descricao Poseidons.Nome REGRAS_CondicoesGruposHead.Descricao "
                               "REGRAS_CondicoesInputs.NomeCondicao REGRAS_CondicoesSensores.NomeCondicao "
                               "REGRAS_Emails.Descricao REGRAS_Outputs.Descricao REGRAS_Sms.Descricao "
                               "Sensores.Descricao SensUI_Escalas.NomeEscala"_s;
        QStringList todos;
        for (const QString &fonte : fontes.split(u' '))
            todos += coluna(m_bd, u"SELECT %2 FROM %1"_s.arg(fonte.section(u'.', 0, 0), fonte.section(u'.', 1)));
        for (const QString &nome : std::as_const(todos)) {
            QCOMPARE(todos.count(nome), 1);
            QVERIFY2(nome.size() <= 21, qPrintable(nome));
        }
    }

    void mesmoPedidoDaOMesmo() {
        (void)fazerBase(caminho(u"a.mdb"_s), pedido(30000));
        (void)fazerBase(caminho(u"b.mdb"_s), pedido(30000));
        (void)fazerBase(caminho(u"c.mdb"_s), pedido(30000, 2));
        QCOMPARE(resumo(caminho(u"a.mdb"_s)), resumo(caminho(u"b.mdb"_s)));
        QVERIFY(resumo(caminho(u"a.mdb"_s)) != resumo(caminho(u"c.mdb"_s)));
    }

    void tantasLinhasQuantasPedidas_data() {
        QTest::addColumn<qint64>("linhas");
        QTest::newRow("pouco mais do que os registos") << qint64(150000);
        QTest::newRow("mais") << qint64(600000);
    }
    void tantasLinhasQuantasPedidas() {
        QFETCH(const qint64, linhas);
        const Resultado r = fazerBase(caminho(u"n%1.mdb"_s.arg(linhas)), pedido(linhas));
        QVERIFY2(std::abs(double(r.linhas) / double(linhas) - 1) < 0.15, qPrintable(QString::number(r.linhas)));
        Ligacao bd;
        bd.abrir(caminho(u"n%1.mdb"_s.arg(linhas)));
        qint64 contadas = 0;
        for (const QString &tabela : coluna(bd, sqlTabelas))
            contadas += coluna(bd, u"SELECT count(*) FROM "_s + tabela).constFirst().toLongLong();
        QCOMPARE(r.linhas, contadas);
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

    // What hangs in one place agrees: the dew point follows from temperature and humidity.
    void fisicaECredivel() {
        Recordset rs = m_bd.consultar(
            u"WITH t AS (SELECT substr(Data, 1, 16) AS m, Temperatura AS v FROM Temperaturas WHERE NomeSensor = "
            "'Câmara Frio 1' AND Temperatura <> 'ND'), h AS (SELECT substr(Data, 1, 16) AS m, Percentagem AS v FROM "
            "Humidade WHERE NomeSensor = 'HR Câmara Frio 1' AND Percentagem <> 'ND'), o AS (SELECT substr(Data, 1, 16) "
            "AS m, Leitura AS v FROM Pontoorvalho WHERE NomeSensor = 'PO Câmara Frio 1' AND Leitura <> 'ND') "
            "SELECT t.v, h.v, o.v FROM o JOIN t USING (m) JOIN h USING (m)"_s);
        int pontos = 0;
        for (; rs.avancar(); ++pontos) {
            // Magnus over water, written out apart from the maker.
            const double t = rs.real(0);
            const double g = std::log(rs.real(1) / 100) + 17.62 * t / (243.12 + t);
            QVERIFY(std::fabs(rs.real(2) - 243.12 * g / (17.62 - g)) < 0.25);
        }
        QVERIFY(pontos > 50);
    }

    void estacoesEDias() {
        const Clima clima(1);
        const auto media = [&clima](int mes, int hora) {
            double soma = 0;
            for (int dia = 1; dia <= 28; ++dia)
                soma += clima.temperatura(Local::Exterior, 80,
                                          clima.momento(qint64(datas::segundosDe(
                                              QDateTime(QDate(2025, mes, dia), QTime(hora, 0), Qt::UTC)))));
            return soma / 28;
        };
        QVERIFY(media(7, 15) > media(1, 15) + 6);
        QVERIFY(media(7, 15) > media(7, 5) + 4);
    }

    void naoDestroiNemDeixaMeias_data() {
        const Tabela<QString, bool, bool> caso("nome", "existente", "interromper");
        caso("ficheiro existente", u"ocupado.mdb"_s, true, false);
        caso("pasta em falta", u"nada/base.mdb"_s, false, false);
        caso("interrompido", u"meio.mdb"_s, false, true);
    }
    void naoDestroiNemDeixaMeias() {
        QFETCH(const QString, nome);
        QFETCH(const bool, existente);
        QFETCH(const bool, interromper);
        if (existente)
            Instalacao::escreverFicheiro(caminho(nome), "meu");
        Pedido p = pedido(30000);
        if (interromper)
            p.aoAvancar = [](const QString &oque) {
                if (oque == u"Pressao")
                    throw Falha(erros::chamadaInvalida, u"basta"_s);
            };
        QVERIFY_THROWS_EXCEPTION(Falha, (void)fazerBase(caminho(nome), p));
        QCOMPARE(Instalacao::lerFicheiro(caminho(nome)), QByteArray(existente ? "meu" : ""));
        QCOMPARE(QDir(m_pasta.path()).entryList({u"*.novo*"_s}), QStringList());
    }

    void oProgramaAbreAInstalacao() {
        Instalacao outra(Instalacao::Base::Nenhuma);
        const QString pasta = outra.ficheiro(u"demonstração nova"_s);
        (void)fazerInstalacao(pasta, pedido(30000));
        (void)fazerInstalacao(pasta, pedido(30000, 2)); // once more, over the first
        estado().PastaPrograma = pasta;
        QVERIFY(modMain::carregaGlobaisBD());
        QCOMPARE(coluna(cnBD(), u"SELECT count(*) FROM Sensores"_s), coluna(m_bd, u"SELECT count(*) FROM Sensores"_s));
        const auto definicao = [](const QString &seccao, const QString &chave) {
            return modINI::GetSetting(u"Vistrel"_s, seccao, chave);
        };
        QCOMPARE(definicao(u"Lingua"_s, u"3"_s), u"Čeština"_s);
        QCOMPARE(definicao(u"Lingua"_s, u"L"_s + definicao(u"Lingua"_s, u"ACT"_s)), u"PT"_s);
        for (const QString &endereco : definicao(u"D2251"_s, u"Pesquisa"_s).split(u' '))
            QVERIFY2(endereco.startsWith(u"127."_s), qPrintable(endereco));
        QVERIFY(QDir(definicao(u"JPG"_s, u"MAIN"_s)).exists());
    }

    // The open missions of the database are in the drawer's buttons, sample by sample.
    void gavetaDeBotoes() {
        Instalacao outra(Instalacao::Base::Nenhuma);
        const QString pasta = outra.ficheiro(u"demo"_s);
        (void)fazerInstalacao(pasta, pedido(30000));
        estado().PastaPrograma = pasta;
        QVERIFY(modMain::carregaGlobaisBD());
        simulador::oferecerGavetas();
        const simulador::Gaveta gaveta(pasta + u"/gaveta"_s);
        QVERIFY(gaveta.nomes().size() >= 6);
        DS1921 controlo;
        controlo.PortaTipo = modINI::GetSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, u"PortType"_s).toShort();
        controlo.PortaNumero = modINI::GetSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, u"PortNum"_s).toShort();
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
        const auto contar = [&leitor](const QString &origem) {
            return coluna(leitor, u"SELECT count(*) FROM "_s + origem).constFirst().toInt();
        };
        const int antes = contar(u"Temperaturas"_s) + contar(u"Humidade"_s);
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
        QCOMPARE(contar(u"Temperaturas"_s) + contar(u"Humidade"_s), antes + 100);
        QCOMPARE(coluna(leitor, u"SELECT t.Temperatura FROM Temperaturas t ORDER BY rowid DESC LIMIT 1"_s),
                 coluna(leitor,
                        u"SELECT UltTemp FROM Sensores WHERE SensorID = (SELECT Sensor FROM Temperaturas ORDER BY "
                        "rowid DESC LIMIT 1)"_s));
        const QString recentes = u" WHERE Data >= '%1'"_s.arg(datas::textoBD(fim));
        QCOMPARE(contar(u"Alarmes"_s + recentes) + contar(u"AlarmesHum"_s + recentes), captura.alarmes());
    }

    void companheiroAcabaQuandoMandado() {
        const QString base = caminho(u"companheiro.mdb"_s);
        (void)fazerBase(base, pedido(30000));
        QProcess processo;
        processo.start(QStringLiteral(KELVARK_CAPTURA), {u"--intervalo"_s, u"5"_s, base});
        QVERIFY(processo.waitForStarted());
        Ligacao leitor;
        leitor.abrir(base);
        const QString recentes = u"SELECT count(*) FROM Temperaturas WHERE Data > '%1'"_s.arg(datas::textoBD(fim));
        QTRY_VERIFY_WITH_TIMEOUT(coluna(leitor, recentes).constFirst().toInt() >= 10, 20000);
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
