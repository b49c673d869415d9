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
        QCOMPARE(coluna(m_bd, u"SELECT SensorID FROM Sensores WHERE length(SensorID) <> 16"_s), QStringList());
        QCOMPARE(coluna(m_bd, u"SELECT DISTINCT Tipo FROM Sensores WHERE Tipo IN ('P 1250C', 'P 1250%', 'P 1250V', "
                              "'P 1250A') ORDER BY 1"_s)
                     .size(),
                 4);
        // Both digits on one unit, every sensor in a group, every unit on this computer.
        QVERIFY(!coluna(m_bd, u"SELECT 1 FROM Sensores a, Sensores b WHERE substr(a.PoseidonIP, 1, 1) = '1' AND "
                              "b.PoseidonIP = '2' || substr(a.PoseidonIP, 2)"_s)
                     .isEmpty());
        QCOMPARE(coluna(m_bd, u"SELECT SensorID FROM Sensores WHERE Grupo NOT IN (SELECT codGrupo FROM Grupos)"_s),
                 QStringList());
        for (const QString &ip : coluna(m_bd, u"SELECT PoseidonIP FROM Poseidons UNION SELECT substr(PoseidonIP, 2) "
                                              "FROM Sensores UNION SELECT IP FROM MaskListaAlarmes"_s))
            QVERIFY2(ip.startsWith(u"127."_s), qPrintable(ip));
    }

    void nomesSaoUnicosNaInstalacao() {
        QStringList todos;
        for (const char *sql : {"SELECT Nome FROM Damocles",
                                "SELECT Descricao FROM DamoclesInputs",
                                "SELECT Descricao FROM DamoclesOutputs",
                                "SELECT Descricao FROM Grupos",
                                "SELECT Descricao FROM IOcontrollers",
                                "SELECT Descricao FROM IOcontrollersInputs",
                                "SELECT Descricao FROM IOcontrollersOutputs",
                                "SELECT Descricao FROM PortBox",
                                "SELECT Descricao FROM PoseidonInputs",
                                "SELECT Descricao FROM PoseidonInputsSpider",
                                "SELECT Descricao FROM PoseidonOutputs",
                                "SELECT Nome FROM Poseidons",
                                "SELECT Descricao FROM REGRAS_CondicoesGruposHead",
                                "SELECT NomeCondicao FROM REGRAS_CondicoesInputs",
                                "SELECT NomeCondicao FROM REGRAS_CondicoesSensores",
                                "SELECT Descricao FROM REGRAS_Emails",
                                "SELECT Descricao FROM REGRAS_Outputs",
                                "SELECT Descricao FROM REGRAS_Sms",
                                "SELECT Descricao FROM Sensores",
                                "SELECT NomeEscala FROM SensUI_Escalas"})
            todos += coluna(m_bd, QString::fromLatin1(sql));
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
        const Prazos porOmissao = prazosPara(0, todos);
        QCOMPARE(porOmissao.diasPrincipais, 395.0);
        const Prazos dezMilhoes = prazosPara(10'000'000, todos);
        QCOMPARE(dezMilhoes.diasPrincipais, 395.0);
        QVERIFY(dezMilhoes.diasOutros > porOmissao.diasOutros);
        const Prazos trinta = prazosPara(30'000'000, todos);
        QVERIFY(trinta.diasPrincipais > 2 * 395 && trinta.diasOutros == trinta.diasPrincipais);
    }

    void haTodosOsLimitesEFaltas() {
        for (const char *padrao : {"[0-9-]*XXX[0-9-]*", "[0-9-]*XXXNA", "NAXXX[0-9-]*", "NAXXXNA"})
            for (const char *tabela :
                 {"Temperaturas", "Humidade", "Pressao", "Pontoorvalho", "SensUI_Leituras", "Medias"})
                QVERIFY2(!coluna(m_bd, u"SELECT 1 FROM %1 WHERE Observacoes GLOB '%2' LIMIT 1"_s.arg(
                                           QString::fromLatin1(tabela), QString::fromLatin1(padrao)))
                              .isEmpty(),
                         padrao);
        QVERIFY(
            !coluna(m_bd, u"SELECT 1 FROM Temperaturas WHERE Observacoes IS NULL AND Temperatura <> 'ND'"_s).isEmpty());
        QVERIFY(!coluna(m_bd, u"SELECT 1 FROM Temperaturas WHERE Temperatura = 'ND'"_s).isEmpty());
        QCOMPARE(coluna(m_bd, u"SELECT DISTINCT substr(PoseidonIP, 1, 1) FROM Humidade, Sensores WHERE "
                              "SensorID = Sensor AND MediaSync = 'TRUE'"_s),
                 QStringList{u"1"_s});
        QCOMPARE(coluna(m_bd, u"SELECT DISTINCT typeof(Temperatura) || typeof(Observacoes) FROM Temperaturas WHERE "
                              "Temperatura = 'ND'"_s),
                 QStringList{u"textnull"_s});
        QCOMPARE(coluna(m_bd, u"SELECT Data FROM Temperaturas WHERE Data IS NOT datetime(Data) LIMIT 1"_s),
                 QStringList());
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
                const double excesso = modDoubleTratamento::TextoParaDouble(nota.mid(11));
                const double limite = modDoubleTratamento::TextoParaDouble(limites[acima ? 0 : 1]);
                QVERIFY(acima || abaixo);
                QVERIFY2(std::fabs(v - limite - excesso) < 0.006, qPrintable(nota));
            } else if (acima || abaixo) {
                QVERIFY2(nota.trimmed().size() > 3, qPrintable(nota)); // somebody's note stands in its place
            } else {
                continue;
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
        const auto porMinuto = [this](const QString &tabela, const QString &valor, const QString &nome) {
            QHash<QString, double> valores;
            Recordset rs = m_bd.consultar(u"SELECT substr(Data, 1, 16), %1 FROM %2 WHERE %1 <> 'ND' AND Sensor = "
                                          "(SELECT SensorID FROM Sensores WHERE Descricao = ?)"_s.arg(valor, tabela),
                                          {nome});
            while (rs.avancar())
                valores[rs.texto(0)] = rs.real(1);
            return valores;
        };
        const auto temperaturas = porMinuto(u"Temperaturas"_s, u"Temperatura"_s, u"Câmara Frio 1"_s);
        const auto humidades = porMinuto(u"Humidade"_s, u"Percentagem"_s, u"HR Câmara Frio 1"_s);
        const auto orvalhos = porMinuto(u"Pontoorvalho"_s, u"Leitura"_s, u"PO Câmara Frio 1"_s);
        int pontos = 0;
        for (auto o = orvalhos.cbegin(); o != orvalhos.cend(); ++o) {
            if (!temperaturas.contains(o.key()) || !humidades.contains(o.key()))
                continue;
            // Magnus over water, written out apart from the maker.
            const double t = temperaturas[o.key()];
            const double g = std::log(humidades[o.key()] / 100) + 17.62 * t / (243.12 + t);
            QVERIFY(std::fabs(o.value() - 243.12 * g / (17.62 - g)) < 0.25);
            ++pontos;
        }
        QVERIFY(pontos > 50);
        QCOMPARE(
            coluna(m_bd, u"SELECT Leitura FROM Pressao WHERE Leitura <> 'ND' AND Leitura NOT BETWEEN 98 AND 105"_s),
            QStringList());
        QCOMPARE(coluna(m_bd,
                        u"SELECT Percentagem FROM Humidade WHERE Percentagem <> 'ND' AND Percentagem NOT BETWEEN 0 "
                        "AND 100"_s),
                 QStringList());
    }

    void estacoesDiasEFaltasDeCorrente() {
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
        int cortes = 0;
        qint64 anterior = 0;
        const qint64 t0 = qint64(datas::segundosDe(fim));
        for (qint64 t = t0 - 395 * 86400; t < t0; t += 300) {
            const bool sem = clima.momento(t).semCorrente;
            cortes += sem && anterior != t - 300 ? 1 : 0;
            anterior = sem ? t : anterior;
        }
        QVERIFY2(cortes >= 3 && cortes <= 8, qPrintable(QString::number(cortes)));
    }

    void registosFechamOQueAbrem() {
        Recordset rs = m_bd.consultar(
            u"SELECT DispositivoIP, InputNum, sum(Estado = 'True') - sum(Estado = 'False') FROM REGISTO_Inputs GROUP BY 1, 2"_s);
        while (rs.avancar())
            QVERIFY(rs.inteiro(2) >= -1 && rs.inteiro(2) <= 1);
        QCOMPARE(coluna(m_bd,
                        u"SELECT CondicaoID FROM REGISTO_C_Inputs WHERE DataOFF < DataON UNION ALL SELECT CondicaoID "
                        "FROM REGISTO_C_Sensores WHERE DataOFF < DataON UNION ALL SELECT Descricao FROM "
                        "MaskListaAlarmes WHERE DataF < DataI OR VerefData < DataF"_s),
                 QStringList());
        // The first row's date decides whether the verified alarms are offered at all.
        QVERIFY(!coluna(m_bd, u"SELECT DataI FROM MaskListaAlarmes ORDER BY rowid LIMIT 1"_s).constFirst().isEmpty());
        QCOMPARE(coluna(m_bd,
                        u"SELECT Alarm FROM DS1921 WHERE (Alarm = 'TRUE') <> (Temperatura >= Max OR Temperatura <= "
                        "Min)"_s),
                 QStringList());
        QCOMPARE(coluna(m_bd, u"SELECT DISTINCT Flag FROM DS1921head ORDER BY 1"_s), (QStringList{u"C"_s, u"NC"_s}));
    }

    void naoDestroiNemDeixaMeias_data() {
        QTest::addColumn<QString>("nome");
        QTest::addColumn<bool>("existente");
        QTest::addColumn<bool>("interromper");
        QTest::newRow("ficheiro existente") << u"ocupado.mdb"_s << true << false;
        QTest::newRow("pasta em falta") << u"nada/base.mdb"_s << false << false;
        QTest::newRow("interrompido") << u"meio.mdb"_s << false << true;
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
        const qint64 antes = coluna(leitor, u"SELECT count(*) FROM Temperaturas"_s).constFirst().toLongLong() +
                             coluna(leitor, u"SELECT count(*) FROM Humidade"_s).constFirst().toLongLong();
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
        QCOMPARE(coluna(leitor, u"SELECT count(*) FROM Temperaturas"_s).constFirst().toLongLong() +
                     coluna(leitor, u"SELECT count(*) FROM Humidade"_s).constFirst().toLongLong(),
                 antes + 100);
        QCOMPARE(coluna(leitor, u"SELECT t.Temperatura FROM Temperaturas t ORDER BY rowid DESC LIMIT 1"_s),
                 coluna(leitor,
                        u"SELECT UltTemp FROM Sensores WHERE SensorID = (SELECT Sensor FROM Temperaturas ORDER BY "
                        "rowid DESC LIMIT 1)"_s));
        QCOMPARE(coluna(leitor, u"SELECT count(*) FROM Alarmes WHERE Data >= '%1'"_s.arg(datas::textoBD(fim)))
                         .constFirst()
                         .toInt() +
                     coluna(leitor, u"SELECT count(*) FROM AlarmesHum WHERE Data >= '%1'"_s.arg(datas::textoBD(fim)))
                         .constFirst()
                         .toInt(),
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
