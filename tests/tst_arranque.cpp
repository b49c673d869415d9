#include "core/falha.h"
#include "core/modINI.h"
#include "data/ligacao.h"
#include "data/modCompactRepairDB.h"
#include "data/modMain.h"
#include "data/recordset.h"
#include "tests/apoio/instalacao.h"

#include <QDir>
#include <QFile>
#include <QTest>

using Base = Instalacao::Base;

class tst_arranque : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void primeiraVez();
    void caminhoPorOmissao_data();
    void caminhoPorOmissao();
    void ramosDaFalha_data();
    void ramosDaFalha();
    void reabreNoCaminhoNovo();
    void boaDepoisDeMa();
    void ligacaoAbertaPorFora();
    void verificaDatas_data();
    void verificaDatas();
    void sensorDesactivo_data();
    void sensorDesactivo();
    void compactarNaoToca();
};

namespace {
const auto aviso = u"AVISO: Base de Dados Inexistente."_s;
void guardarCaminho(const QString &caminho) {
    modINI::SaveSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s, caminho);
}
QString caminhoGuardado() {
    return modINI::GetSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s);
}
} // namespace

void tst_arranque::primeiraVez() {
    Instalacao inst(Base::Nenhuma);
    inst.ficheiroLingua(u"EN"_s, {{u"VISTREL_modMain"_s, u"Aviso"_s, u"There is no database."_s}});
    inst.usarLingua(u"EN"_s);
    inst.dialogos.esperarMensagem(u"There is no database."_s);
    QVERIFY(!modMain::carregaGlobaisBD());
    const QString omissao = inst.pastaPrograma() + u"/BD/Kelvark.mdb"_s;
    QCOMPARE(caminhoGuardado(), omissao);
    QCOMPARE(estado().CaminhoBD, omissao);
    QVERIFY(!QFile::exists(omissao));
    QCOMPARE(inst.dialogos.estilos, QList{Dialogos::Estilo::Informacao});
    QDir(inst.pastaPrograma()).mkdir(u"BD"_s);
    inst.criarBase(omissao);
    QVERIFY(modMain::carregaGlobaisBD());
}

void tst_arranque::caminhoPorOmissao_data() {
    QTest::addColumn<QString>("pasta");
    QTest::addColumn<QString>("caminho");
    QTest::newRow("plain") << u"/opt/vistrel"_s << u"/opt/vistrel/BD/Kelvark.mdb"_s;
    QTest::newRow("backslash inside") << u"/opt\\x"_s << u"/opt\\x/BD/Kelvark.mdb"_s;
    QTest::newRow("backslash first: no separator") << u"\\\\pc\\vistrel"_s << u"\\\\pc\\vistrelBD/Kelvark.mdb"_s;
}

void tst_arranque::caminhoPorOmissao() {
    QFETCH(QString, pasta);
    Instalacao inst(Base::Nenhuma);
    estado().PastaPrograma = pasta;
    QTEST(modMain::caminhoBDPorOmissao(), "caminho");
}

void tst_arranque::ramosDaFalha_data() {
    QTest::addColumn<QByteArray>("bytes");  // of the new file; null: none
    QTest::addColumn<bool>("comAviso");     // the warning, else a report
    QTest::addColumn<bool>("ligadaDepois"); // BDLigada, which was true
    QTest::newRow("missing") << QByteArray() << true << false;
    QTest::newRow("not a database") << QByteArray(1000, 'x') << false << true;
}

void tst_arranque::ramosDaFalha() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, comAviso);
    QFETCH(bool, ligadaDepois);
    Instalacao inst;
    const QString novo = inst.ficheiro(u"nova"_s);
    if (!bytes.isNull())
        Instalacao::escreverFicheiro(novo, bytes);
    guardarCaminho(novo);
    if (comAviso)
        inst.dialogos.esperarMensagem(aviso);
    else
        inst.erros.esperar(u"modMain.carregaGlobaisBD"_s);
    QVERIFY(!modMain::carregaGlobaisBD());
    QCOMPARE(estado().BDLigada, ligadaDepois);
    QVERIFY(!ligacaoPartilhada().aberta()); // never the old file under the new path
    QCOMPARE(inst.erros.ampulhetas, 0);
}

void tst_arranque::reabreNoCaminhoNovo() {
    Instalacao inst;
    const QString novo = inst.ficheiro(u"nova"_s);
    inst.criarBase(novo);
    inst.sensor({u"S1"_s, u"Antiga"_s});
    guardarCaminho(novo);
    QVERIFY(modMain::carregaGlobaisBD());
    QCOMPARE(estado().CaminhoBD, novo);
    QVERIFY(!cnBD().consultar(u"SELECT * FROM Sensores"_s).avancar());
    guardarCaminho(inst.caminhoBD());
    QVERIFY(modMain::carregaGlobaisBD());
    QVERIFY(cnBD().consultar(u"SELECT * FROM Sensores"_s).avancar());
}

void tst_arranque::boaDepoisDeMa() {
    Instalacao inst;
    const QString ma = inst.ficheiro(u"ma"_s);
    Instalacao::escreverFicheiro(ma, "x");
    guardarCaminho(ma);
    inst.erros.esperar(u"não é uma base de dados"_s);
    QVERIFY(!modMain::carregaGlobaisBD());
    guardarCaminho(inst.caminhoBD());
    QVERIFY(modMain::carregaGlobaisBD()); // without the warning that it does not exist
    QVERIFY(estado().BDLigada);
}

void tst_arranque::ligacaoAbertaPorFora() {
    Instalacao inst;
    estado().BDLigada = false; // the connection is open, and the state does not know it
    inst.dialogos.esperarMensagem(aviso);
    QVERIFY(!modMain::carregaGlobaisBD());
    QVERIFY(!ligacaoPartilhada().aberta() && !estado().BDLigada);
    QVERIFY(modMain::carregaGlobaisBD());
}

void tst_arranque::verificaDatas_data() {
    QTest::addColumn<QString>("inicio");
    QTest::addColumn<QString>("fim");
    QTest::addColumn<QString>("esperado");
    const auto linha = [](const char *n, const QString &i, const QString &f, const QString &e) {
        QTest::newRow(n) << i << f << e;
    };
    linha("a day", u"15/03/2024 00:00:00"_s, u"15/03/2024 23:59:59"_s, u"TRUE"_s);
    linha("a second", u"15/03/2024 00:00:00"_s, u"15/03/2024 00:00:01"_s, u"TRUE"_s);
    linha("equal", u"15/03/2024 00:00:00"_s, u"15/03/2024 00:00:00"_s, u"FALSE"_s);
    linha("turned round", u"16/03/2024 00:00:00"_s, u"15/03/2024 00:00:00"_s, u"FALSE"_s);
    linha("day before month", u"02/12/2024 00:00:00"_s, u"11/01/2025 00:00:00"_s, u"TRUE"_s);
    linha("in the hour summer time skips", u"31/03/2024 01:15:00"_s, u"31/03/2024 01:45:00"_s, u"TRUE"_s);
    linha("across it", u"31/03/2024 01:59:00"_s, u"31/03/2024 02:00:00"_s, u"TRUE"_s);
    linha("no date", u"31/02/2024 00:00:00"_s, u"15/03/2024 00:00:00"_s, u"FALSE"_s);
    linha("empty", QString(), QString(), u"FALSE"_s);
}

void tst_arranque::verificaDatas() {
    QFETCH(QString, inicio);
    QFETCH(QString, fim);
    Instalacao inst(Base::Nenhuma);
    QTEST(modMain::VerificaDatas(inicio, fim), "esperado");
}

void tst_arranque::sensorDesactivo_data() {
    QTest::addColumn<QString>("Seleccionado");
    QTest::addColumn<bool>("desactivo");
    QTest::newRow("selected") << u"SIM"_s << false;
    QTest::newRow("not") << u"NAO"_s << true;
    QTest::newRow("other case is another value") << u"sim"_s << true;
    QTest::newRow("empty") << QString() << true;
}

void tst_arranque::sensorDesactivo() {
    QFETCH(QString, Seleccionado);
    Instalacao inst;
    inst.sensor({u"S'1"_s, u"Um"_s, u"P 1250C"_s, Seleccionado});
    QTEST(modMain::VerificaSeSensorEstaDesactivo(u"S'1"_s), "desactivo");
    QVERIFY(modMain::VerificaSeSensorEstaDesactivo(u"S2"_s)); // no row
    ligacaoPartilhada().fechar();
    inst.erros.esperar(u"modMain.VerificaSeSensorEstaDesactivo"_s);
    QVERIFY(!modMain::VerificaSeSensorEstaDesactivo(u"S'1"_s));
}

void tst_arranque::compactarNaoToca() {
    Instalacao inst;
    inst.reiniciar();
    const QByteArray antes = Instalacao::lerFicheiro(inst.caminhoBD());
    modCompactRepairDB::CompactarErepararBD(inst.caminhoBD());
    modCompactRepairDB::CompactarErepararBD(inst.ficheiro(u"nao/ha"_s));
    QCOMPARE(Instalacao::lerFicheiro(inst.caminhoBD()), antes);
    QCOMPARE(QDir(inst.ficheiro(u"BD"_s)).entryList(QDir::Files), QStringList{u"Kelvark.mdb"_s});
    cCompactRepairDB c;
    c.CompactAndRepairDB(inst.caminhoBD());
    QCOMPARE(c.destino(), inst.caminhoBD() + u".ylk"_s);
}

QTEST_GUILESS_MAIN(tst_arranque)
#include "tst_arranque.moc"
