#include "core/datas.h"
#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/modINI.h"
#include "data/copiaDatada.h"
#include "data/fusaoSensores.h"
#include "data/ligacao.h"
#include "data/modMain.h"
#include "data/recordset.h"
#include "tests/apoio/instalacao.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace fusaoSensores;

namespace {

struct TabelaComSensor {
    QString nome;
    QString coluna;
    bool deFora = false;
};

// Found in the database itself, so that a table forgotten in the program's list shows here.
QList<TabelaComSensor> tabelasComSensor() {
    const QStringList deFora = {u"AlarmesPOrv"_s, u"AlarmesPressao"_s, u"Pontoorvalho"_s,   u"PontoorvalhoPull"_s,
                                u"Pressao"_s,     u"PressaoPull"_s,    u"SensUI_Relacoes"_s};
    QList<TabelaComSensor> tabelas;
    Recordset rs = cnBD().consultar(u"SELECT m.name, c.name FROM sqlite_master m, pragma_table_info(m.name) c WHERE "
                                    "m.type = 'table' AND c.name IN ('Sensor', 'SensorID', 'SondaID') ORDER BY 1"_s);
    while (rs.avancar())
        tabelas.append({rs.texto(0), rs.texto(1), deFora.contains(rs.texto(0))});
    return tabelas;
}

// `linhas` rows of a sensor in every table that names sensors (one in the register).
void encher(const QString &sensor, int linhas) {
    Transaccao transaccao(cnBD());
    for (const TabelaComSensor &t : tabelasComSensor())
        cnBD().executar(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?2) "
                        "INSERT INTO %1 (%2) SELECT ?1 FROM n"_s.arg(t.nome, t.coluna),
                        {sensor, t.nome == u"Sensores" ? 1 : linhas});
    transaccao.confirmar();
}

using Contagens = QMap<QString, qint64>;

Contagens contagens(const QString &sensor) {
    Contagens c;
    for (const TabelaComSensor &t : tabelasComSensor()) {
        Recordset rs = cnBD().consultar(u"SELECT COUNT(*) FROM %1 WHERE %2 = ?"_s.arg(t.nome, t.coluna), {sensor});
        rs.avancar();
        c[t.nome] = rs.inteiro(0);
    }
    return c;
}

Contagens esperadas(qint64 mudadas, qint64 deFora, qint64 noRegisto) {
    Contagens c;
    for (const TabelaComSensor &t : tabelasComSensor())
        c[t.nome] = t.nome == u"Sensores" ? noRegisto : t.deFora ? deFora : mudadas;
    return c;
}

QStringList ficheirosAoLado(const Instalacao &inst) {
    QStringList nomes = QDir(inst.ficheiro(u"BD"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    nomes.removeAll(u"Kelvark.mdb"_s);
    nomes.removeAll(u"Kelvark.mdb-wal"_s);
    nomes.removeAll(u"Kelvark.mdb-shm"_s);
    return nomes;
}

QString texto(const QString &sql) {
    Recordset rs = cnBD().consultar(sql);
    return rs.avancar() ? rs.texto(0) : u"(no row)"_s;
}

QString idDaCadeia(int n) {
    return u"S%1"_s.arg(n, 6, 10, QChar(u'0'));
}

// The child of resisteAoFim: merges each sensor of a chain into the next one until it is killed.
int fusoesSemFim(const QString &caminho) {
    QObject dono;
    ligacaoPartilhada().abrir(caminho);
    QFile saida;
    if (!saida.open(stdout, QIODevice::WriteOnly))
        return 1;
    for (int n = texto(u"SELECT MIN(SensorID) FROM Sensores"_s).mid(1).toInt();; ++n) {
        saida.write("i" + QByteArray::number(n) + '\n');
        saida.flush();
        executarAlteracao({idDaCadeia(n), idDaCadeia(n + 1)}, Vigia(&dono));
        saida.write("f" + QByteArray::number(n) + '\n');
        saida.flush();
    }
}

} // namespace

class tst_registo : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void unidadePorEndereco();
    void unidadePorSensor();
    void nomesEmTodasAsTabelas_data();
    void nomesEmTodasAsTabelas();
    void nomeComTabelaEmFalta();
    void novaDescricao_data();
    void novaDescricao();
    void novaDescricaoEsgotada();
    void novaDescricaoComSufixoLongo();
    void pastaDeHoje_data();
    void pastaDeHoje();
    void caminhosPropostos();
    void criarPastas_data();
    void criarPastas();
    void validarIP_data();
    void validarIP();
    void alteracao_data();
    void alteracao();
    void fusaoGuardaOsValores();
    void contagemIgualAoEfeito();
    void falhaAMeioNaoMudaNada();
    void abandonoAMeioNaoMudaNada();
    void eventosDuranteAFusao();
    void resisteAoFim();
    void copia();
    void copiaDeUmSoMomento();
    void copiaAbandonada();
    void copiaEmPastaSoDeLeitura();
    void copiaComDiscoCheio();

private:
    QObject m_dono;
    Vigia m_vigia{&m_dono};
};

void tst_registo::unidadePorEndereco() {
    Instalacao inst;
    inst.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Mac) VALUES ('http://O''Neil/', 'Câmara', NULL)"_s);
    QString nome = u"before"_s;
    QString mac = u"before"_s;
    modMain::BuscarNomePoseidonPorID(u"  http://o'neil/ "_s, nome, mac);
    QCOMPARE(nome, u"Câmara"_s);
    QCOMPARE(mac, QString());
    nome = mac = u"before"_s;
    modMain::BuscarNomePoseidonPorID(u"127.0.0.9"_s, nome, mac);
    QCOMPARE(nome + mac, QString());
    ligacaoPartilhada().fechar();
    nome = u"before"_s;
    inst.erros.esperar(u"modMain.BuscarNomePoseidonPorID"_s);
    modMain::BuscarNomePoseidonPorID(u"127.0.0.9"_s, nome, mac);
    QCOMPARE(nome, QString());
}

void tst_registo::unidadePorSensor() {
    const Instalacao inst;
    inst.sensor({u"A'000000000000001"_s, u"Um"_s});
    inst.executar(u"INSERT INTO Sensores (SensorID) VALUES ('SEM')"_s);
    QCOMPARE(modMain::BuscarPoseidonPorIDSensor(u" A'000000000000001 "_s), u"2127.0.0.2"_s);
    QCOMPARE(modMain::BuscarPoseidonPorIDSensor(u"SEM"_s), QString());
    QCOMPARE(modMain::BuscarPoseidonPorIDSensor(u"outro"_s), QString());
}

void tst_registo::nomesEmTodasAsTabelas_data() {
    QTest::addColumn<QString>("tabela");
    QTest::addColumn<QString>("coluna");
    QTest::addColumn<bool>("conta");
    const Instalacao inst;
    // Every text column of the schema that bears such a name: all count but the ones of tables that are not named
    // things of the installation.
    const QStringList naoContam = {u"CMDGrupos.Descricao"_s,   u"Alarmes.Nome"_s,
                                   u"AlarmesHum.Nome"_s,       u"AlarmesPOrv.Nome"_s,
                                   u"AlarmesPressao.Nome"_s,   u"MaskListaAlarmes.Descricao"_s,
                                   u"MaskUtilizadores.Nome"_s, u"REGRAS_CondicoesGruposHead.Nome"_s};
    Recordset rs = cnBD().consultar(
        u"SELECT m.name, c.name FROM sqlite_master m, pragma_table_info(m.name) c WHERE m.type = 'table' AND c.name IN "
        "('Nome', 'Descricao', 'NomeCondicao', 'NomeEscala')"_s);
    while (rs.avancar()) {
        const QString nome = rs.texto(0) + u'.' + rs.texto(1);
        QTest::newRow(qPrintable(nome)) << rs.texto(0) << rs.texto(1) << !naoContam.contains(nome);
    }
}

void tst_registo::nomesEmTodasAsTabelas() {
    QFETCH(QString, tabela);
    QFETCH(QString, coluna);
    QFETCH(bool, conta);
    const Instalacao inst;
    const QString nome = u"Câmara d'água 1"_s;
    QVERIFY(!modMain::VerificarSeDescricaoJaExiste(nome));
    inst.executar(u"INSERT INTO %1 (%2) VALUES (?)"_s.arg(tabela, coluna), {nome});
    QCOMPARE(modMain::VerificarSeDescricaoJaExiste(nome), conta);
    QCOMPARE(modMain::VerificarSeDescricaoJaExiste(u"câmara D'ÁGUA 1"_s.replace(u"Á"_s, u"á"_s)), conta);
    QVERIFY(!modMain::VerificarSeDescricaoJaExiste(nome + u'1'));
}

void tst_registo::nomeComTabelaEmFalta() {
    Instalacao inst;
    inst.sensor({u"A"_s, u"Um"_s});
    inst.executar(u"DROP TABLE PortBox"_s);
    inst.erros.esperar(u"modMain.VerificarSeDescricaoJaExiste"_s);
    QVERIFY(!modMain::VerificarSeDescricaoJaExiste(u"Um"_s));
}

void tst_registo::novaDescricao_data() {
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("sufixo");
    QTest::addColumn<QStringList>("tomadas");
    QTest::addColumn<QString>("esperada");
    const QString longa = u"123456789012345678901234567890"_s;
    QTest::newRow("free") << u"Arca"_s << u"Temp"_s << QStringList() << u"Arca Temp"_s;
    QTest::newRow("free, however long") << longa << u"T"_s << QStringList() << longa + u" T"_s;
    QTest::newRow("taken") << u"Arca"_s << u"Temp"_s << QStringList(u"Arca Temp"_s) << u"Arca Temp(1)"_s;
    QTest::newRow("taken twice") << u"Arca"_s << u"Temp"_s << QStringList({u"Arca Temp"_s, u"arca temp(1)"_s})
                                 << u"Arca Temp(2)"_s;
    QTest::newRow("shortened to twenty") << longa << u"T"_s << QStringList(longa + u" T"_s)
                                         << u"123456789012345 T(1)"_s;
    QTest::newRow("twenty stay") << u"123456789012345"_s << u"T"_s << QStringList(u"123456789012345 T"_s)
                                 << u"123456789012345 T(1)"_s;
    QStringList nove = {longa + u" T"_s};
    for (int n = 1; n <= 9; ++n)
        nove += u"123456789012345 T(%1)"_s.arg(n);
    QTest::newRow("more digits, shorter base") << longa << u"T"_s << nove << u"12345678901234 T(10)"_s;
    const QString rosto = QString(QChar(0xD83D)) + QChar(0xDE00);
    QTest::newRow("no half characters") << u"12345678901234"_s + rosto << u"T"_s
                                        << QStringList(u"12345678901234"_s + rosto + u" T"_s)
                                        << u"12345678901234 T(1)"_s;
    QTest::newRow("base used up") << u"Base"_s << u"1234567890123456"_s << QStringList(u"Base 1234567890123456"_s)
                                  << u" 1234567890123456(1)"_s;
}

void tst_registo::novaDescricao() {
    QFETCH(QString, base);
    QFETCH(QString, sufixo);
    QFETCH(QStringList, tomadas);
    const Instalacao inst;
    for (const QString &nome : tomadas)
        inst.executar(u"INSERT INTO Sensores (SensorID, Descricao) VALUES (?1, ?1)"_s, {nome});
    QTEST(modMain::CriarNovaDescricao(base, sufixo), "esperada");
}

void tst_registo::novaDescricaoEsgotada() {
    const Instalacao inst;
    Transaccao transaccao(cnBD());
    cnBD().executar(u"INSERT INTO Grupos (Descricao) VALUES ('Arca T')"_s);
    for (int n = 1; n <= 999; ++n)
        cnBD().executar(u"INSERT INTO Grupos (Descricao) VALUES (?)"_s, {u"Arca T(%1)"_s.arg(n)});
    transaccao.confirmar();
    QCOMPARE(modMain::CriarNovaDescricao(u"Arca"_s, u"T"_s), u"Arca T(1000)"_s);
    cnBD().executar(u"INSERT INTO Grupos (Descricao) VALUES ('Arca T(1000)')"_s);
    QCOMPARE(modMain::CriarNovaDescricao(u"Arca"_s, u"T"_s), QString());
}

void tst_registo::novaDescricaoComSufixoLongo() {
    Instalacao inst;
    const QString sufixo(18, u'x');
    inst.sensor({u"A"_s, u"Arca "_s + sufixo});
    inst.erros.esperar(u"modMain.CriarNovaDescricao"_s);
    QCOMPARE(modMain::CriarNovaDescricao(u"Arca"_s, sufixo), QString());
}

// "%P" stands for the program's folder, "%T" for the installation's.
void tst_registo::pastaDeHoje_data() {
    QTest::addColumn<QString>("definicao");
    QTest::addColumn<QString>("esperada");
    QTest::newRow("none") << QString() << u"%P/JPG/2024/3/5"_s;
    QTest::newRow("blank") << u"   "_s << u"%P/JPG/2024/3/5"_s;
    QTest::newRow("plain") << u"%T/exp"_s << u"%T/exp/2024/3/5"_s;
    QTest::newRow("slash behind") << u"%T/exp/"_s << u"%T/exp/2024/3/5"_s;
    QTest::newRow("backslash behind") << u"%T/exp\\"_s << u"%T/exp/2024/3/5"_s;
    QTest::newRow("several levels") << u"%T/a/b/c"_s << u"%T/a/b/c/2024/3/5"_s;
    QTest::newRow("dot alone") << u"."_s << u"%P/2024/3/5"_s;
    QTest::newRow("dot and slash") << u"./"_s << u"%P/2024/3/5"_s;
    QTest::newRow("below the program") << u"./exp"_s << u"%P/exp/2024/3/5"_s;
    QTest::newRow("written with backslashes") << u".\\exp\\jpg\\"_s << u"%P/exp/jpg/2024/3/5"_s;
    QTest::newRow("beside the program") << u"../exp"_s << u"%P/../exp/2024/3/5"_s;
    QTest::newRow("with accents") << u"%T/Exportação d'água"_s << u"%T/Exportação d'água/2024/3/5"_s;
}

void tst_registo::pastaDeHoje() {
    QFETCH(QString, definicao);
    QFETCH(QString, esperada);
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.relogio(u"2024-03-05 09:08:07"_s);
    modINI::SaveSetting(estado().NomePrograma, u"JPG"_s, u"MAIN"_s, definicao.replace(u"%T"_s, inst.ficheiro({})));
    esperada.replace(u"%T"_s, inst.ficheiro({})).replace(u"%P"_s, inst.pastaPrograma());
    QCOMPARE(modMain::CriarCaminhoJPG(), esperada);
    QVERIFY(QFileInfo(esperada).isDir());
    QCOMPARE(modMain::CriarCaminhoJPG(), esperada); // also when it is there
}

void tst_registo::caminhosPropostos() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.relogio(u"2024-12-25 09:08:07"_s);
    const QString pasta = inst.pastaPrograma() + u"/JPG/2024/12/25"_s;
    QCOMPARE(modMain::CriarCaminhoCSV(u"AvgTemp"_s), pasta + u"/AvgTemp09-08-07.csv"_s);
    QVERIFY(QFileInfo(pasta).isDir());
    QCOMPARE(modMain::CriarCaminhoJPG(u"GraphAvgTemp"_s), pasta + u"/GraphAvgTemp09-08-07.jpg"_s);
    inst.relogio(u"2024-12-25 23:00:59"_s);
    QCOMPARE(modMain::TratarNomeFicheiroJPG(u"a b"_s), u"a b23-00-59.jpg"_s);
    QCOMPARE(modMain::TratarNomeFicheiroCSV({}), u"23-00-59.csv"_s);
    // A folder that cannot be made is named all the same, without a report: the dialog lets the user choose another.
    Instalacao::escreverFicheiro(inst.ficheiro(u"ocupado"_s), "x");
    modINI::SaveSetting(estado().NomePrograma, u"JPG"_s, u"MAIN"_s, inst.ficheiro(u"ocupado"_s));
    QCOMPARE(modMain::CriarCaminhoJPG(), inst.ficheiro(u"ocupado/2024/12/25"_s));
}

void tst_registo::criarPastas_data() {
    QTest::addColumn<QString>("caminho");
    QTest::addColumn<bool>("criada");
    QTest::newRow("one") << u"%T/um"_s << true;
    QTest::newRow("parents too") << u"%T/um/dois/três"_s << true;
    QTest::newRow("there already") << u"%T/programa"_s << false;
    QTest::newRow("no parent") << u"um"_s << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("below a file") << u"%T/programa/Kelvark.ini/um"_s << false;
    QTest::newRow("at the root, there already") << u"/tmp"_s << false;
}

void tst_registo::criarPastas() {
    QFETCH(QString, caminho);
    const Instalacao inst(Instalacao::Base::Nenhuma);
    caminho.replace(u"%T"_s, inst.ficheiro({}));
    const bool havia = QFileInfo::exists(caminho);
    const bool criada = modMain::CriarPastas(caminho);
    QTEST(criada, "criada");
    QCOMPARE(QFileInfo(caminho).isDir(), criada || havia);
}

void tst_registo::validarIP_data() {
    QTest::addColumn<bool>("valido");
    for (const char *bom : {"127.0.0.1", "0.0.0.0", "255.255.255.255", "  10.1.2.3 ", "010.001.002.003"})
        QTest::newRow(bom) << true;
    for (const char *mau : {"", "  ", "1.2.3", "1.2.3.4.5", ".1.2.3", "1.2.3.", "1.2.3.4.", "1..2.3", "1.2.3.256",
                            "1.2.3.-4", "1.2.3.4a", "1.2. 3.4", "1.2.3.99999999999999999999", "a.b.c.d", "1,2,3,4",
                            "1.2.3.+4", "1.2.3.\xD9\xA4", "http://1.2.3.4"})
        QTest::newRow(mau) << false;
}

void tst_registo::validarIP() {
    QTEST(modMain::ValidarIP(QString::fromUtf8(QTest::currentDataTag())), "valido");
}

void tst_registo::alteracao_data() {
    QTest::addColumn<QString>("novo");
    QTest::addColumn<bool>("eliminar");
    QTest::addColumn<bool>("move"); // rows of A go to `novo`
    QTest::addColumn<bool>("some"); // A leaves the tables of the list
    QTest::newRow("nothing") << QString() << false << false << false;
    QTest::newRow("merged") << u"b'\"; --"_s << false << true << true;
    QTest::newRow("merged into one that no sensor has") << u"X"_s << false << true << true;
    QTest::newRow("blanks around") << u" X "_s << false << true << true;
    QTest::newRow("removed") << QString() << true << false << true;
    QTest::newRow("blank, removed") << u"  "_s << true << false << true;
    QTest::newRow("merged and removed") << u"b'\"; --"_s << true << true << true;
    QTest::newRow("into itself") << u"A'1"_s << false << false << false;
    QTest::newRow("into itself, other case") << u"a'1"_s << false << false << false;
    QTest::newRow("into itself and removed") << u"A'1"_s << true << false << true;
}

void tst_registo::alteracao() {
    QFETCH(QString, novo);
    QFETCH(bool, eliminar);
    QFETCH(bool, move);
    QFETCH(bool, some);
    const Instalacao inst;
    constexpr int linhas = 2100; // more than two batches
    encher(u"A'1"_s, linhas);
    encher(u"B'\"; --"_s, 3);
    encher(u"C"_s, 2);
    const auto outros = [] { return std::pair(contagens(u"B'\"; --"_s), contagens(u"C"_s)); };
    const auto antes = outros();
    const qint64 alvoAntes = contagens(novo.trimmed())[u"Medias"_s];

    executarAlteracao({u"A'1"_s, novo, eliminar}, m_vigia);

    // The tables of pressure, dew point and scales keep the old identifier.
    QCOMPARE(contagens(u"A'1"_s), some ? esperadas(0, linhas, 0) : esperadas(linhas, linhas, 1));
    if (move) {
        const bool existia = alvoAntes > 0;
        QCOMPARE(contagens(novo.trimmed()), esperadas(alvoAntes + linhas, alvoAntes, existia ? 1 : 0));
        QCOMPARE(contagens(u"C"_s), antes.second);
    } else {
        QVERIFY(outros() == antes);
    }
}

void tst_registo::fusaoGuardaOsValores() {
    const Instalacao inst;
    inst.sensores({{u"A"_s, u"Velho"_s}, {u"B"_s, u"Novo"_s}});
    inst.leituras(u"Medias"_s, u"A"_s, {{u"2024-03-01 10:00:00"_s, 21.5, u"30XXX10"_s, u"nota d'água"_s}});
    inst.leituras(u"Medias"_s, u"B"_s, {{u"2024-03-01 10:00:00"_s, u"ND"_s}});
    executarAlteracao({u"A"_s, u"B"_s}, m_vigia);
    QCOMPARE(inst.linha(u"SELECT group_concat(Data || '|' || Sensor || '|' || NomeSensor || '|' || Temperatura || '|' "
                        "|| ifnull(Observacoes, '-') || '|' || flag, ';') FROM Medias"_s),
             QVariantList{u"2024-03-01 10:00:00|B|Velho|21.5|30XXX10|nota d'água;2024-03-01 10:00:00|B|Novo|ND|-| "_s});
}

void tst_registo::contagemIgualAoEfeito() {
    const Instalacao inst;
    int linhas = 5;
    for (const QString &s : {u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s})
        encher(s, linhas++);
    // A's rows go with B; C ends in D, which stands before it; a lower-case name is the same sensor; E stays.
    const std::vector<AlteracaoSensor> lista = {{u"A"_s, u"b"_s}, {u"B"_s, {}, true}, {u"D"_s, u"F"_s, true},
                                                {u"C"_s, u"D"_s}, {u"E"_s, u"E"_s},   {u"A"_s, {}, true}};
    Contagens movidas;
    Contagens eliminadas;
    for (const ContagemTabela &c : contarAlteracoes(lista, m_vigia)) {
        movidas[c.tabela] = c.movidas;
        eliminadas[c.tabela] = c.eliminadas;
    }
    for (const TabelaComSensor &t : tabelasComSensor()) {
        const bool registo = t.nome == u"Sensores";
        QCOMPARE(movidas.contains(t.nome), !t.deFora);
        QCOMPARE(movidas.value(t.nome), t.deFora || registo ? 0 : 5 + 8 + 7);
        QCOMPARE(eliminadas.value(t.nome), t.deFora ? 0 : registo ? 4 : 5 + 6);
    }

    const auto total = [] {
        Contagens c;
        for (const TabelaComSensor &t : tabelasComSensor())
            c[t.nome] = texto(u"SELECT COUNT(*) FROM "_s + t.nome).toLongLong();
        return c;
    };
    const Contagens antes = total();
    for (const AlteracaoSensor &a : lista)
        executarAlteracao(a, m_vigia);
    const Contagens depois = total();
    for (auto i = antes.begin(); i != antes.end(); ++i)
        QCOMPARE(i.value() - depois[i.key()], eliminadas.value(i.key()));
    QVERIFY(contarAlteracoes({{u"E"_s, u"e "_s}}, m_vigia).empty());
}

void tst_registo::falhaAMeioNaoMudaNada() {
    const Instalacao inst;
    encher(u"A"_s, 4);
    encher(u"B"_s, 4);
    const auto antes = std::pair(contagens(u"A"_s), contagens(u"B"_s));
    inst.executar(u"CREATE TRIGGER t BEFORE DELETE ON Sensores BEGIN SELECT RAISE(ABORT, 'no'); END"_s);
    QVERIFY_THROWS_EXCEPTION(Falha, executarAlteracao({u"A"_s, u"B"_s}, m_vigia));
    QVERIFY_THROWS_EXCEPTION(Falha, executarAlteracao({u"A"_s, {}, true}, m_vigia));
    QVERIFY(std::pair(contagens(u"A"_s), contagens(u"B"_s)) == antes);
    inst.executar(u"DROP TRIGGER t"_s); // the write lock is free again
    executarAlteracao({u"A"_s, u"B"_s}, m_vigia);
    QCOMPARE(contagens(u"B"_s), esperadas(8, 4, 1));
}

void tst_registo::abandonoAMeioNaoMudaNada() {
    const Instalacao inst;
    encher(u"A"_s, 1500);
    const Contagens antes = contagens(u"A"_s);
    for (const qint64 quando : {qint64(1), qint64(5000), qint64(14 * 1500 + 1)}) {
        auto dono = std::make_unique<QObject>();
        const Vigia vigia(dono.get());
        const Progresso fechar = [&](qint64 feitas) {
            if (feitas >= quando)
                dono.reset();
        };
        QVERIFY_THROWS_EXCEPTION(Interrompido, executarAlteracao({u"A"_s, u"B"_s, true}, vigia, fechar));
        QCOMPARE(contagens(u"A"_s), antes);
        QCOMPARE(contagens(u"B"_s), esperadas(0, 0, 0));
    }
}

void tst_registo::eventosDuranteAFusao() {
    const Instalacao inst;
    inst.leituras(u"Medias"_s, u"A"_s, u"2024-01-01 00:00:00"_s, 60, QList<double>(60'000, 21.5));
    QTimer relogio;
    int voltas = 0;
    relogio.callOnTimeout([&] { ++voltas; });
    relogio.start(0);
    QElapsedTimer tempo;
    tempo.start();
    contarAlteracoes({{u"A"_s, u"B"_s}}, m_vigia);
    executarAlteracao({u"A"_s, u"B"_s}, m_vigia);
    // Once every 15 ms is the aim; a loaded machine may be granted a few times that.
    QVERIFY2(voltas >= tempo.elapsed() / 100, qPrintable(u"%1 in %2 ms"_s.arg(voltas).arg(tempo.elapsed())));
    QVERIFY(voltas > 0);
}

// Killed at any moment, a merge has happened as a whole or not at all.
void tst_registo::resisteAoFim() {
    constexpr int linhas = 1500;
    const Instalacao inst;
    encher(idDaCadeia(0), linhas);
    cnBD().executarGuiao(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
                         "INSERT INTO Sensores (SensorID) SELECT printf('S%06d', i) FROM n"_s);
    ligacaoPartilhada().fechar();
    QRandomGenerator acaso(11);
    int aMeio = 0;
    for (int vez = 0; vez < 15; ++vez) {
        QProcess filho;
        filho.start(QCoreApplication::applicationFilePath(), {u"--fusoes"_s, inst.caminhoBD()});
        QVERIFY(filho.waitForReadyRead());
        QTest::qSleep(int(acaso.bounded(1, 250)));
        filho.kill();
        QVERIFY(filho.waitForFinished());
        QCOMPARE(filho.exitStatus(), QProcess::CrashExit); // it was still at work
        const QByteArray ultima = filho.readAll().trimmed().split('\n').last();
        const bool dentro = ultima.startsWith('i');
        aMeio += dentro;

        ligacaoPartilhada().abrir(inst.caminhoBD());
        const QString dono = texto(u"SELECT MIN(SensorID) FROM Sensores"_s);
        QCOMPARE(contagens(dono)[u"Medias"_s], linhas);
        for (const TabelaComSensor &t : tabelasComSensor()) {
            if (t.nome == u"Sensores" || t.deFora)
                continue;
            QCOMPARE(texto(u"SELECT COUNT(*) || ' ' || MIN(%2) || ' ' || MAX(%2) FROM %1"_s.arg(t.nome, t.coluna)),
                     u"%1 %2 %2"_s.arg(QString::number(linhas), dono));
        }
        // What was told to be done is done.
        const int n = ultima.mid(1).toInt();
        QVERIFY2(dono == idDaCadeia(n + 1) || (dentro && dono == idDaCadeia(n)), qPrintable(dono + ultima.constData()));
        QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
        ligacaoPartilhada().fechar();
    }
    QVERIFY(aMeio > 0);
}

void tst_registo::copia() {
    Instalacao inst;
    inst.relogio(u"2024-03-05 09:08:07"_s);
    encher(u"A"_s, 1500);
    QFile::setPermissions(inst.caminhoBD(), QFile::ReadOwner | QFile::WriteOwner);
    int ultima = 0;
    int total = 0;
    const QString primeira = copiaDatada(m_vigia, [&](int feito, int todo) {
        QVERIFY(feito > ultima && feito <= todo);
        ultima = feito;
        total = todo;
    });
    QCOMPARE(primeira, inst.ficheiro(u"BD/Kelvark-2024-03-05_09-08-07.mdb"_s));
    QCOMPARE(ultima, total);
    QCOMPARE(QFile::permissions(primeira) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    // Another one in the same second stands beside it.
    const QByteArray bytes = Instalacao::lerFicheiro(primeira);
    executarAlteracao({u"A"_s, {}, true}, m_vigia);
    const QString segunda = copiaDatada(m_vigia);
    QCOMPARE(segunda, inst.ficheiro(u"BD/Kelvark-2024-03-05_09-08-07-2.mdb"_s));
    QVERIFY(Instalacao::lerFicheiro(primeira) == bytes);
    QCOMPARE(ficheirosAoLado(inst), (QStringList{QFileInfo(segunda).fileName(), QFileInfo(primeira).fileName()}));

    // The copy is a database that the program opens, with what was removed since.
    ligacaoPartilhada().fechar();
    ligacaoPartilhada().abrir(primeira);
    QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
    QCOMPARE(contagens(u"A"_s), esperadas(1500, 1500, 1));
}

void tst_registo::copiaDeUmSoMomento() {
    const Instalacao inst;
    encher(u"A"_s, 8000);
    int passos = 0;
    int esperados = 0;
    const QString caminho = copiaDatada(m_vigia, [&](int, int total) {
        // Another program writes after every step; were the copy to start over each time, it would never end.
        inst.executar(u"INSERT INTO Medias (Sensor, Data) VALUES ('A', 'late')"_s);
        esperados = total / 128 + 1;
        QVERIFY2(++passos <= esperados, "the copy started over");
    });
    QVERIFY(passos > 5);
    QCOMPARE(contagens(u"A"_s)[u"Medias"_s], 8000 + passos);
    ligacaoPartilhada().fechar();
    ligacaoPartilhada().abrir(caminho);
    QCOMPARE(contagens(u"A"_s), esperadas(8000, 8000, 1));
    QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
}

void tst_registo::copiaAbandonada() {
    const Instalacao inst;
    encher(u"A"_s, 1500);
    auto dono = std::make_unique<QObject>();
    const Vigia vigia(dono.get());
    bool aMeio = false;
    QVERIFY_THROWS_EXCEPTION(Interrompido, copiaDatada(vigia, [&](int feito, int total) {
                                 aMeio = feito < total;
                                 dono.reset();
                             }));
    QVERIFY(aMeio);
    QCOMPARE(ficheirosAoLado(inst), QStringList());
}

void tst_registo::copiaEmPastaSoDeLeitura() {
    const Instalacao inst;
    encher(u"A"_s, 10);
    const QString pasta = inst.ficheiro(u"BD"_s);
    const auto modoAntes = QFile::permissions(pasta);
    const auto leitura = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QFile::setPermissions(pasta, leitura);
    QFile::setPermissions(inst.ficheiro({}), leitura);
    // The superuser may write everywhere, so somebody else has to try.
    const bool superutilizador = geteuid() == 0;
    QVERIFY(!superutilizador || seteuid(65534) == 0);
    QString motivo;
    try {
        copiaDatada(m_vigia);
    } catch (const Falha &f) {
        motivo = f.descricao();
    }
    QVERIFY(!superutilizador || seteuid(0) == 0);
    QFile::setPermissions(inst.ficheiro({}), modoAntes);
    QFile::setPermissions(pasta, modoAntes);
    QVERIFY2(motivo.startsWith(u"Não é possível criar a cópia"_s), qPrintable(motivo));
    QCOMPARE(ficheirosAoLado(inst), QStringList());
}

void tst_registo::copiaComDiscoCheio() {
    const Instalacao inst;
    encher(u"A"_s, 1500);
    // A bound on the size of files acts as a full disk does: a write in the middle fails.
    const auto sinalAntes = std::signal(SIGXFSZ, SIG_IGN);
    rlimit antes{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &antes), 0);
    for (const rlim_t limite : {rlim_t(1000), rlim_t(300'000)}) {
        rlimit apertado = antes;
        apertado.rlim_cur = limite;
        setrlimit(RLIMIT_FSIZE, &apertado);
        QString motivo;
        try {
            copiaDatada(m_vigia);
        } catch (const Falha &f) {
            motivo = f.descricao();
        }
        setrlimit(RLIMIT_FSIZE, &antes);
        QVERIFY2(motivo.startsWith(u"A cópia da base de dados em"_s), qPrintable(motivo));
        QCOMPARE(ficheirosAoLado(inst), QStringList());
    }
    std::signal(SIGXFSZ, sinalAntes);
    QVERIFY(QFile::exists(copiaDatada(m_vigia)));
}

int main(int argc, char **argv) {
    const QCoreApplication app(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--fusoes") == 0)
        return fusoesSemFim(QFile::decodeName(argv[2]));
    tst_registo teste;
    return QTest::qExec(&teste, argc, argv);
}
#include "tst_registo.moc"
