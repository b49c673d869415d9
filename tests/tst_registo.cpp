#include "core/estado.h"
#include "core/modINI.h"
#include "data/ligacao.h"
#include "data/modMain.h"
#include "data/recordset.h"
#include "tests/apoio/instalacao.h"

#include <QFileInfo>
#include <QTest>

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

QTEST_GUILESS_MAIN(tst_registo)
#include "tst_registo.moc"
