#include "data/modCompactRepairDB.h"
#include "data/modMain.h"
#include "tests/apoio/instalacao.h"

using Base = Instalacao::Base;

namespace {

const auto aviso = u"AVISO: Base de Dados Inexistente."_s;

bool carregar(const QString &caminho) {
    modINI::SaveSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s, caminho);
    return modMain::carregaGlobaisBD();
}

} // namespace

class tst_arranque : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void primeiraVez() {
        Instalacao inst(Base::Nenhuma);
        inst.ficheiroLingua(u"EN"_s, {{u"VISTREL_modMain"_s, u"Aviso"_s, u"There is no database."_s}});
        inst.usarLingua(u"EN"_s);
        inst.dialogos.esperarMensagem(u"There is no database."_s);
        QVERIFY(!modMain::carregaGlobaisBD());
        const QString omissao = inst.pastaPrograma() + u"/BD/Kelvark.mdb"_s;
        QCOMPARE(modINI::GetSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s), omissao);
        QCOMPARE(estado().CaminhoBD, omissao);
        QVERIFY(!QFile::exists(omissao));
        QCOMPARE(inst.dialogos.estilos, QList{Dialogos::Estilo::Informacao});
        QDir(inst.pastaPrograma()).mkdir(u"BD"_s);
        inst.criarBase(omissao);
        QVERIFY(modMain::carregaGlobaisBD());
    }

    void caminhoPorOmissao() {
        const Instalacao inst(Base::Nenhuma);
        estado().PastaPrograma = u"/opt\\x"_s;
        QCOMPARE(modMain::caminhoBDPorOmissao(), u"/opt\\x/BD/Kelvark.mdb"_s);
        estado().PastaPrograma = u"\\\\pc\\vistrel"_s; // backslash first: no separator
        QCOMPARE(modMain::caminhoBDPorOmissao(), u"\\\\pc\\vistrelBD/Kelvark.mdb"_s);
    }

    void ramosDaFalha() {
        Instalacao inst;
        const QString nova = inst.ficheiro(u"nova"_s);
        const auto estaAberta = [] { return ligacaoPartilhada().aberta(); }; // never the old file under the new path
        inst.dialogos.esperarMensagem(aviso + u"\n\"" + nova + u'"');
        QVERIFY(!carregar(nova));
        QVERIFY(!estado().BDLigada && !estaAberta());

        // Anything but a missing file is reported, and BDLigada stays as it was.
        QVERIFY(carregar(inst.caminhoBD()));
        Instalacao::escreverFicheiro(nova, QByteArray(1000, 'x'));
        inst.erros.esperar(u"modMain.carregaGlobaisBD"_s);
        QVERIFY(!carregar(nova));
        QVERIFY(estado().BDLigada && !estaAberta());
        QVERIFY(carregar(inst.caminhoBD())); // without the warning that it does not exist

        estado().BDLigada = false; // the connection is open, and the state does not know it
        inst.dialogos.esperarMensagem(aviso);
        QVERIFY(!modMain::carregaGlobaisBD());
        QVERIFY(!estado().BDLigada && !estaAberta());
        QVERIFY(modMain::carregaGlobaisBD() && estado().BDLigada);
    }

    // The path that cannot be stored is used all the same.
    void caminhoPorGuardar() {
        Instalacao inst(Base::Nenhuma);
        QDir(inst.pastaPrograma()).mkdir(u"BD"_s);
        inst.criarBase(modMain::caminhoBDPorOmissao());
        QVERIFY(QDir(inst.pastaINI()).removeRecursively());
        QVERIFY(modMain::carregaGlobaisBD());
        QCOMPARE(estado().CaminhoBD, modMain::caminhoBDPorOmissao());
    }

    void verificaDatas_data() {
        const Tabela<QString, QString, QString> caso("inicio", "fim", "esperado");
        caso("a second", u"15/03/2024 00:00:00"_s, u"15/03/2024 00:00:01"_s, u"TRUE"_s);
        caso("equal", u"15/03/2024 00:00:00"_s, u"15/03/2024 00:00:00"_s, u"FALSE"_s);
        caso("turned round", u"16/03/2024 00:00:00"_s, u"15/03/2024 00:00:00"_s, u"FALSE"_s);
        caso("in the hour summer time skips", u"31/03/2024 01:15:00"_s, u"31/03/2024 01:45:00"_s, u"TRUE"_s);
        caso("no first date", u"31/02/2024 00:00:00"_s, u"15/03/2024 00:00:00"_s, u"FALSE"_s);
        caso("no last date", u"15/03/2024 00:00:00"_s, {}, u"FALSE"_s);
    }
    void verificaDatas() {
        QFETCH(QString, inicio);
        QFETCH(QString, fim);
        const Instalacao inst(Base::Nenhuma);
        QTEST(modMain::VerificaDatas(inicio, fim), "esperado");
    }

    void sensorDesactivo() {
        Instalacao inst;
        inst.sensor({u"S'1"_s, u"Um"_s});
        // Another case is another value.
        for (const QString &seleccionado : {u"NAO"_s, u"sim"_s, u""_s, u"SIM"_s}) {
            inst.executar(u"UPDATE Sensores SET Seleccionado = ?"_s, {seleccionado});
            QCOMPARE(modMain::VerificaSeSensorEstaDesactivo(u"S'1"_s), seleccionado != u"SIM");
        }
        QVERIFY(modMain::VerificaSeSensorEstaDesactivo(u"S2"_s)); // no row
        ligacaoPartilhada().fechar();
        inst.erros.esperar(u"modMain.VerificaSeSensorEstaDesactivo"_s);
        QVERIFY(!modMain::VerificaSeSensorEstaDesactivo(u"S'1"_s));
    }

    void compactarNaoToca() {
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
};

QTEST_GUILESS_MAIN(tst_arranque)
#include "tst_arranque.moc"
