// The views of stored missions.
#include "core/modPassWord.h"
#include "logger/views/forms/painelMissoes.h"
#include "logger/views/forms/registar.h"
#include "logger/views/listaMissoes.h"
#include "tests/apoio/cenaVista.h"

namespace {

const ChaveMissao evora{u"21A"_s, u"Vacinas"_s, u"Évora d'Oriente"_s, u"0001"_s};
const ChaveMissao faro{u"21A"_s, u"Vacinas"_s, u"Faro"_s, u"0002"_s};
const ChaveMissao museu{u"21B"_s, u"Museu"_s, u"Reservas"_s, u"0001"_s};

struct Cena : CenaVista {
    Cena() : CenaVista(registarVistasDosRegistadores) {
        cabeca(evora, u"2024-03-01 10:00:00"_s, u"2024-03-10 10:00:00"_s, u"C"_s);
        cabeca(faro, u"2024-03-05 10:00:00"_s, u"2024-03-15 11:59:59"_s, u"NC"_s);
        cabeca(museu, u"2024-03-03 10:00:00"_s, u"2024-03-15 12:00:01"_s, u"NC"_s);
        amostra(evora, u"2024-03-01 10:00:00"_s, 4.5, u"FALSE"_s, QVariant());
        amostra(evora, u"2024-03-01 11:00:00"_s, 8, u"TRUE"_s, u"aberta"_s);
        amostra(evora, u"2024-03-02 10:00:00"_s, 2, u"TRUE"_s, u""_s);
        amostra(faro, u"2024-03-01 10:00:00"_s, 30, u"TRUE"_s, u"outra"_s);
    }
    void cabeca(const ChaveMissao &m, const QString &inicio, const QString &fim, const QString &flag) const {
        executar(u"INSERT INTO DS1921head VALUES (?, ?, ?, ?, ?, ?, 8, 2, ?, '0')"_s,
                 m.valores() + QVariantList{inicio, fim, flag});
    }
    void amostra(const ChaveMissao &m, const QString &data, double valor, const QString &alarme,
                 const QVariant &nota) const {
        executar(u"INSERT INTO DS1921 VALUES (?, ?, ?, ?, ?, ?, 8, 2, ?, ?)"_s,
                 m.valores() + QVariantList{data, valor, alarme, nota});
    }
    Grelha &registadores() const { return *controlo<Grelha>(form, u"grdSensoresAll"_s); }
    Grelha &missoes() const { return *controlo<Grelha>(form, u"grdSensoresMissao"_s); }
    QString intervalo() const {
        const auto *painel = form->findChild<PainelVista *>();
        return painel->textoInicio() + u" - " + painel->textoFim();
    }
    // Rows of a mission in both tables.
    QVariantList linhas(const ChaveMissao &m) const {
        Recordset rs = cnBD().consultar(u"SELECT (SELECT COUNT(*) FROM DS1921head WHERE %1), "
                                        "(SELECT COUNT(*) FROM DS1921 WHERE %1)"_s.arg(ChaveMissao::onde()),
                                        m.valores() + m.valores());
        rs.avancar();
        return {rs.inteiro(0), rs.inteiro(1)};
    }
    void passWord(const QString &cifrada) const {
        modINI::SaveSetting(estado().NomePrograma, u"CONFIGURACOES"_s, u"PWD"_s, cifrada);
    }
};

QVariantList cheia(int cabecas, int amostras) {
    return {qint64(cabecas), qint64(amostras)};
}

} // namespace

class TesteRegistadores : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void listasLigadas() {
        Cena c;
        c.abrir(u"frmGraficoLoggers"_s);
        QCOMPARE(c.registadores().linhas(), 2);
        QCOMPARE(c.missoes().linhas(), 2);
        QCOMPARE(c.intervalo(), u"01/03/2024 10:00:00 - 02/03/2024 10:00:00"_s);
        QVERIFY(!c.visivel(u"lblSemDados"_s));
        c.missoes().setLinhaActual(1);
        QCOMPARE(c.intervalo(), u"01/03/2024 10:00:00 - 01/03/2024 10:00:01"_s);
        c.registadores().setLinhaActual(1);
        QCOMPARE(c.missoes().linhas(), 1);
        QVERIFY(c.visivel(u"lblSemDados"_s)); // never downloaded
        QCOMPARE(c.intervalo(), u"01/03/2024 10:00:00 - 01/03/2024 10:00:01"_s);
        // A name stands there once with each button that bears it, and a button once under each name.
        c.cabeca({u"21B"_s, u"Vacinas"_s, u"Reservas"_s, u"0001"_s}, {}, {}, u"C"_s);
        c.abrir(u"frmGraficoLoggers"_s);
        QCOMPARE(c.registadores().linhas(), 3);
    }

    void grafico() {
        Cena c;
        c.abrir(u"frmGraficoLoggers"_s);
        c.confirmar();
        QCOMPARE(c.chart().Series(0).y(), (std::vector<double>{4.5, 8, 2}));
        QCOMPARE(c.chart().Series(0).estado(1), EstadoDoPonto::Acima);
        QCOMPARE(c.chart().Series(0).estado(2), EstadoDoPonto::Abaixo);
        QCOMPARE(c.chart().Series(1).y(), (std::vector<double>{8, 8, 8}));
        QCOMPARE(c.legenda(u"lblMedia"_s), u"Média = 4,83 °C"_s);
        c.dialogos.responderGravar(c.ficheiro(u"m.csv"_s), u"GraphLoggers"_s);
        c.dialogos.esperarMensagem(u"sucesso"_s);
        c.form->findChild<QAction *>(u"mnuExportCSV"_s)->trigger();
        QCOMPARE(Instalacao::lerFicheiro(c.ficheiro(u"m.csv"_s)), // newest first
                 QByteArray("02/03/2024 10:00:00;21A;Vacinas;2;8;2\r\n01/03/2024 11:00:00;21A;Vacinas;8;8;2\r\n"
                            "01/03/2024 10:00:00;21A;Vacinas;4,5;8;2\r\n"));
        // The note goes to this mission's sample alone.
        Q_EMIT c.chart().OnClickSeries(0, 0, Qt::LeftButton, Qt::NoModifier, QPoint(-1000, -1000));
        QWidget *pontos = registoForms().form(u"frmOpccoesLoggersPontos"_s);
        QVERIFY(pontos);
        QTest::keyClicks(controlo<QPlainTextEdit>(pontos, u"txtObservacoes"_s), u"partida"_s);
        clicar(pontos, u"cmdConcluir"_s);
        QCOMPARE(c.linha(u"SELECT group_concat(flag, '|') FROM (SELECT flag FROM DS1921 WHERE Data = "
                         "'2024-03-01 10:00:00' ORDER BY DescricaoMissao DESC)"_s),
                 QVariantList({u"partida|outra"_s}));
    }

    // The buckets begin at the mission's least value, also when the range leaves it out.
    void histograma() {
        Cena c;
        c.abrir(u"frmHistogramaLoggers"_s);
        controlo<QComboBox>(c.form, u"cboIntervaloHistograma"_s)->setCurrentText(u"4.0"_s);
        controlo<QDateEdit>(c.form, u"DTPdataFim"_s)->setDate(QDate(2024, 3, 1));
        controlo<QTimeEdit>(c.form, u"DTPHoraFim"_s)->setTime(QTime(23, 0));
        c.confirmar();
        QCOMPARE(c.legenda(u"lblTotal"_s), u"N° de Leituras = 2"_s);
        QCOMPARE(c.chart().Series(0).PointLabel(0), u"2 <> 6"_s);
        QCOMPARE(c.chart().Series(0).PointLabel(1), u"6,1 <> 10"_s);
    }

    void listagens_data() {
        const Tabela<QString, QStringList, QString> caso("form", "datas", "relatorio");
        caso("notes", u"frmListagemObservacoesLogger"_s, {u"01/03/2024 11:00:00"_s}, u"DataReportListagemLogger"_s);
        caso("alarms", u"frmListagemAlarmesLogger"_s, {u"02/03/2024 10:00:00"_s, u"01/03/2024 11:00:00"_s},
             u"DataReportAlarmesLogger"_s);
    }
    void listagens() {
        QFETCH(const QString, form);
        QFETCH(const QStringList, datas);
        QFETCH(const QString, relatorio);
        Cena c;
        c.abrir(form);
        c.confirmar();
        QAbstractItemModel *modelo = controlo<QTableView>(c.form, u"DataGrid"_s)->model();
        int coluna = 0;
        while (modelo->headerData(coluna, Qt::Horizontal).toString() != u"Data")
            QVERIFY(++coluna < modelo->columnCount());
        QStringList lidas;
        for (int i = 0; i < modelo->rowCount(); ++i)
            lidas.append(modelo->index(i, coluna).data().toString());
        QCOMPARE(lidas, datas);
        clicar(c.form, u"cmdImprimir"_s);
        for (QWidget *topo : QApplication::topLevelWidgets())
            if (auto *janela = qobject_cast<JanelaRelatorio *>(topo); janela && janela->objectName() == relatorio) {
                SeccaoDeRelatorio *cabeca = janela->relatorio().Sections(u"Section4"_s);
                QCOMPARE(cabeca->controlo(u"lblMissao"_s)->Caption, u"Descriçao da Missão: Évora d'Oriente"_s);
                QCOMPARE(cabeca->controlo(u"lblNMissao"_s)->Caption, u"N° da Missão: 0001"_s);
                janela->close();
                return;
            }
        QFAIL("no preview");
    }

    void eliminar_data() {
        const Tabela<bool, bool, bool, bool> caso("sim", "comPassWord", "certa", "eliminada");
        caso("no", false, false, false, false);
        caso("yes, no password", true, false, false, true);
        caso("wrong password", true, true, false, false);
        caso("right password", true, true, true, true);
    }
    void eliminar() {
        QFETCH(const bool, sim);
        QFETCH(const bool, comPassWord);
        QFETCH(const bool, certa);
        QFETCH(const bool, eliminada);
        Cena c;
        c.passWord(comPassWord ? modPassWord::pwdPorOmissao() : QString());
        int pedidas = 0;
        registoForms().registar(u"frmPassWord"_s, [&](QWidget *) {
            ++pedidas;
            estado().EliminarConfirmado = certa && estado().ObjectivoPassWord == 1;
            auto *dialogo = new QWidget;
            dialogo->setAttribute(Qt::WA_DeleteOnClose);
            QMetaObject::invokeMethod(dialogo, &QWidget::close, Qt::QueuedConnection);
            return dialogo;
        });
        c.abrir(u"frmGraficoLoggers"_s);
        c.confirmar();
        clicar(c.form, u"cmdOpccoes"_s);
        c.dialogos.responderPergunta(sim, u"Deseja Eliminar a missão?"_s);
        clicar(c.form, u"cmdEliminar"_s);
        QVERIFY(c.dialogos.textos.last().endsWith(
            u"\nRegistador: 21A Vacinas\nMissão: 0001 Évora d'Oriente\nAmostras guardadas: 3"));
        QCOMPARE(pedidas, sim && comPassWord ? 1 : 0);
        QCOMPARE(c.linhas(evora), eliminada ? cheia(0, 0) : cheia(1, 3));
        QCOMPARE(c.linhas(faro), cheia(1, 1));
        QCOMPARE(c.missoes().linhas(), eliminada ? 1 : 2);
        QVERIFY(c.principal.isEnabled());
        // What is gone is drawn and printed no more.
        QCOMPARE(c.chart().Series(0).Count(), eliminada ? 0 : 3);
        QCOMPARE(c.permitido(u"cmdImprimir"_s), !eliminada);
        if (!eliminada)
            return;
        // The next one is chosen; with the last one the logger goes, and nothing is chosen for the user.
        QCOMPARE(c.intervalo(), u"01/03/2024 10:00:00 - 01/03/2024 10:00:01"_s);
        c.passWord({});
        c.dialogos.responderPergunta(true);
        clicar(c.form, u"cmdEliminar"_s);
        QCOMPARE(c.linhas(faro), cheia(0, 0));
        QCOMPARE(c.registadores().linhas(), 1);
        QVERIFY(c.form->findChild<PainelMissoes *>()->missao().vazia());
        QCOMPARE(c.missoes().linhas(), 0);
        clicar(c.form, u"cmdEliminar"_s); // asks nothing
        c.dialogos.verificar();
        QCOMPARE(c.linhas(museu), cheia(1, 0));
        QTest::keyClick(&c.registadores(), Qt::Key_Down);
        QCOMPARE(c.form->findChild<PainelMissoes *>()->missao(), museu);
    }

    void ordens_data() {
        const Tabela<QString, QStringList> caso("opcao", "missoes");
        caso("id", u"optOrdenacao_ID"_s, {u"Faro"_s, u"Évora d'Oriente"_s, u"Tardia"_s});
        caso("name", u"optOrdenacao_Reg"_s, {u"Tardia"_s, u"Faro"_s, u"Évora d'Oriente"_s});
        caso("start", u"optOrdenacao_Prog"_s, {u"Tardia"_s, u"Faro"_s, u"Évora d'Oriente"_s});
        caso("end", u"optOrdenacao_FimMissao"_s, {u"Faro"_s, u"Évora d'Oriente"_s, u"Tardia"_s});
    }
    void ordens() {
        QFETCH(const QString, opcao);
        QFETCH(const QStringList, missoes);
        Cena c;
        c.cabeca({u"21C"_s, u"Arca"_s, u"Tardia"_s, u"0001"_s}, u"2024-03-07 10:00:00"_s, u"2024-03-08 10:00:00"_s,
                 u"C"_s);
        c.abrir(u"frmListagemLoggers"_s);
        auto *grelha = controlo<Grelha>(c.form, u"DataGrid"_s);
        QCOMPARE(grelha->linhas(), 1); // in progress; what ended a second ago is concluded
        QCOMPARE(c.linha(u"SELECT group_concat(flag, '') FROM (SELECT flag FROM DS1921head ORDER BY %1)"_s.arg(
                     dialecto::ordem)),
                 QVariantList({u"CCNCC"_s}));
        clicar(c.form, opcao);
        clicar(c.form, u"chkConcluidas"_s);
        QVERIFY(!controlo<QCheckBox>(c.form, u"chkEmCurso"_s)->isChecked());
        QStringList lidas;
        for (int i = 0; i < grelha->linhas(); ++i)
            lidas.append(grelha->celula(i, 2));
        QCOMPARE(lidas, missoes);
    }

    // With nothing to conclude, the list waits for no other program and writes nothing.
    void listaSemEscrever() {
        Cena c;
        c.executar(u"UPDATE DS1921head SET flag = 'C' WHERE DescricaoMissao = 'Faro'"_s);
        Ligacao outra;
        outra.abrir(c.caminhoBD());
        const Transaccao aEscrever(outra);
        cnBD().definirEspera(0);
        c.abrir(u"frmListagemLoggers"_s);
        QCOMPARE(controlo<Grelha>(c.form, u"DataGrid"_s)->linhas(), 1);
        c.erros.verificar();
    }

    void verGrafico() {
        Cena c;
        c.abrir(u"frmListagemLoggers"_s);
        clicar(c.form, u"chkConcluidas"_s);
        auto *grelha = controlo<Grelha>(c.form, u"DataGrid"_s);
        for (const QString &missao : {u"Évora d'Oriente"_s, u"Faro"_s}) { // the second time it is open already
            for (int i = 0; i < grelha->linhas(); ++i)
                if (grelha->celula(i, 2) == missao)
                    grelha->setLinhaActual(i);
            clicar(c.form, u"cmdImprimir"_s);
            QWidget *grafico = registoForms().form(u"frmGraficoLoggers"_s);
            QVERIFY(grafico);
            QTRY_VERIFY(c.principal.isEnabled());
            const TSerie &serie = controlo<TChart>(grafico, u"TChart"_s)->Series(0);
            QVERIFY2(serie.Title.contains(missao), qPrintable(serie.Title));
            QVERIFY(serie.Count() > 0);
        }
        delete registoForms().form(u"frmGraficoLoggers"_s);
    }
};

QTEST_MAIN(TesteRegistadores)
#include "tst_registadores.moc"
