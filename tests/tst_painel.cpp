#include "tests/cenaGrafico.h"
#include "views/forms/painelSensores.h"

namespace {

// A view that has the keyboard, over four sensors, the second one deactivated.
struct Painel : Vista {
    explicit Painel(const QString &nome = graficoTemp) : Vista(registarVistas) {
        abrir(nome);
        form->activateWindow();
        if (!QTest::qWaitForWindowActive(form))
            utilizador::desistir(nome + u" is not active");
    }
    Grelha *todos() const { return controlo<Grelha>(form, u"grdSensoresAll"_s); }
    Grelha *escolhidos() const { return controlo<Grelha>(form, u"grdSensoresSel"_s); }
};

struct QuatroSensores : Instalacao {
    QuatroSensores() {
        sensores({{u"28A0000000000001"_s, u"Cave"_s, u"P 1250C"_s, u"SIM"_s, 1, u"POSEIDON"_s, u"110.0.0.1"_s},
                  {u"28A0000000000002"_s, u"Sótão"_s, u"P 1250C"_s, u"NAO"_s, 1, u"POSEIDON"_s, u"210.0.0.1"_s},
                  {u"28A0000000000003"_s, u"Arca"_s, u"P 1250C"_s, u"SIM"_s, 2, u"POSEIDON"_s, u"210.0.0.2"_s},
                  {u"28A0000000000004"_s, u"Forno d'Ar"_s, u"P 1250C"_s, u"SIM"_s, 2, u"POSEIDON"_s, u"210.0.0.2"_s}});
        executar(u"INSERT INTO Grupos VALUES (1, 'Câmaras'), (2, 'Armazém')"_s);
        executar(u"INSERT INTO Poseidons (PoseidonIP, Nome) VALUES ('10.0.0.1', 'Cave')"_s);
    }
};

QStringList nomes(const Grelha *grelha) {
    QStringList lista;
    for (int i = 0; i < grelha->linhas(); ++i)
        lista.append(grelha->celula(i, 1));
    return lista;
}

QColor fundo(const Grelha *grelha, int linha) {
    return grelha->model()->index(linha, 0).data(Qt::BackgroundRole).value<QColor>();
}

void duploClique(Grelha *grelha, int linha) {
    const QPoint ponto = grelha->visualRect(grelha->model()->index(linha, 1)).center();
    QTest::mouseClick(grelha->viewport(), Qt::LeftButton, {}, ponto);
    QTest::mouseDClick(grelha->viewport(), Qt::LeftButton, {}, ponto);
}

void porData(const QWidget *form, const QString &nome, const QDate &data) {
    controlo<QDateEdit>(form, nome)->setDate(data);
}

} // namespace

class tst_painel : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void abrePorSi() {
        const QuatroSensores inst;
        inst.usarLingua(u"CZ"_s);
        const Painel v;
        QVERIFY(v.visivel(u"PictOpccoes"_s));
        QVERIFY(!v.visivel(u"picGrupos"_s));
        QCOMPARE(controlo<QDateEdit>(v.form, u"DTPdataInicio"_s)->date(), QDate(2024, 3, 15));
        QCOMPARE(controlo<QDateEdit>(v.form, u"DTPdataFim"_s)->date(), QDate(2024, 3, 15));
        QCOMPARE(controlo<QDateEdit>(v.form, u"DTPdataFim"_s)->calendarWidget()->locale().standaloneMonthName(3),
                 u"březen"_s);
        QCOMPARE(controlo<QDateEdit>(v.form, u"DTPdataFim"_s)->text(), u"15/03/2024"_s);
        QCOMPARE(controlo<QTimeEdit>(v.form, u"DTPhoraInicio"_s)->time(), QTime(0, 0));
        QCOMPARE(controlo<QTimeEdit>(v.form, u"DTPHoraFim"_s)->time(), QTime(23, 59, 59));
        QCOMPARE(controlo<QWidget>(v.form, u"DTPHoraFim"_s)->property("text").toString(), u"23:59:59"_s);
    }

    // With the Tab key as with the eye, from above to below.
    void ordemDoFoco() {
        const QuatroSensores inst;
        const Painel v(u"frmGraficoPrincipalHistograma"_s);
        QCOMPARE(QApplication::focusWidget(), v.todos()); // where the choice begins
        clicar(v.form, u"cmdOpccoes"_s);
        clicar(v.form, u"cmdOpccoes"_s);
        controlo<QWidget>(v.form, u"cmdOpccoes"_s)->setFocus(Qt::TabFocusReason);
        for (const QString &nome :
             {u"cmdGrupos"_s, u"grdSensoresAll"_s, u"cmdAdicionar"_s, u"cmdAdicionarAll"_s, u"cmdRemover"_s,
              u"cmdRemoverAll"_s, u"grdSensoresSel"_s, u"DTPdataInicio"_s, u"DTPhoraInicio"_s, u"DTPdataFim"_s,
              u"DTPHoraFim"_s, u"cboIntervaloHistograma"_s, u"cmdPeriodos"_s, u"cmdConfirmar"_s}) {
            const QString antes = QApplication::focusWidget()->objectName();
            for (int i = 0; i < 3 && QApplication::focusWidget()->objectName() == antes; ++i) // day, month, year
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), nome);
        }
    }

    void listaECores() {
        const QuatroSensores inst;
        const Painel v;
        QCOMPARE(nomes(v.todos()), QStringList({u"Cave"_s, u"Sótão"_s, u"Arca"_s, u"Forno d'Ar"_s}));
        const QColor creme(253, 251, 232);
        const QColor verde(234, 242, 235);
        const QColor vermelho(238, 156, 136);
        const QColor esperadas[] = {creme, vermelho, verde, creme}; // the red row does not turn the stripe
        for (int i = 0; i < 4; ++i)
            QCOMPARE(fundo(v.todos(), i), esperadas[i]);
        v.todos()->setLinhaActual(1);
        clicar(v.form, u"cmdAdicionar"_s);
        QCOMPARE(fundo(v.escolhidos(), 0), vermelho);
    }

    // On a dark palette the rows must be dark, keep their order of standing out, and let light text be read.
    void coresEscuras() {
        QPalette escura;
        escura.setColor(QPalette::Base, QColor(30, 30, 30));
        const QColor normal = riscas::cor(EstadoDaLinha::Par, escura);
        const QColor vermelho = riscas::cor(EstadoDaLinha::Desactivada, escura);
        for (const auto estado : {EstadoDaLinha::Par, EstadoDaLinha::Impar, EstadoDaLinha::Desactivada})
            QVERIFY(riscas::cor(estado, escura).lightness() < 110);
        QVERIFY(vermelho.lightness() > normal.lightness() + 20);
        QVERIFY(vermelho.red() > 1.5 * vermelho.blue());
    }

    void moverComRato() {
        const QuatroSensores inst;
        const Painel v;
        duploClique(v.todos(), 2);
        duploClique(v.todos(), 0);
        QCOMPARE(nomes(v.escolhidos()), QStringList({u"Arca"_s, u"Cave"_s})); // in order of adding
        QCOMPARE(nomes(v.todos()), QStringList({u"Sótão"_s, u"Forno d'Ar"_s}));
        duploClique(v.escolhidos(), 0);
        QCOMPARE(nomes(v.escolhidos()), QStringList{u"Cave"_s});
        QCOMPARE(nomes(v.todos()).last(), u"Arca"_s);
    }

    void moverComTeclado() {
        const QuatroSensores inst;
        const Painel v;
        v.todos()->setFocus();
        QTest::keyClick(v.todos(), Qt::Key_Down);
        QTest::keyClick(v.todos(), Qt::Key_Return);
        QTest::keyClick(v.todos(), Qt::Key_Enter); // the next row has come up
        QCOMPARE(nomes(v.escolhidos()), QStringList({u"Sótão"_s, u"Arca"_s}));
        v.escolhidos()->setFocus();
        QTest::keyClick(v.escolhidos(), Qt::Key_Home);
        QTest::keyClick(v.escolhidos(), Qt::Key_Return);
        QCOMPARE(nomes(v.escolhidos()), QStringList{u"Arca"_s});
    }

    void moverTodos() {
        const QuatroSensores inst;
        const Painel v;
        v.todos()->setLinhaActual(3);
        clicar(v.form, u"cmdAdicionar"_s);
        clicar(v.form, u"cmdAdicionarAll"_s);
        QCOMPARE(nomes(v.escolhidos()), QStringList({u"Forno d'Ar"_s, u"Cave"_s, u"Sótão"_s, u"Arca"_s}));
        QCOMPARE(v.todos()->linhas(), 0);
        clicar(v.form, u"cmdAdicionar"_s); // nothing to move
        QCOMPARE(v.escolhidos()->linhas(), 4);
        clicar(v.form, u"cmdRemover"_s);
        clicar(v.form, u"cmdRemoverAll"_s);
        QCOMPARE(v.escolhidos()->linhas(), 0);
        QCOMPARE(v.todos()->linhas(), 4);
    }

    void filtrar_data() {
        // linha: of the drop-down: all, one unit, two groups
        const Tabela<int, QString, QString, QStringList> caso("linha", "legenda", "tag", "lista");
        caso("unit", 1, u"Cave"_s, u"#P#10.0.0.1"_s, {u"Cave"_s, u"Sótão"_s});
        caso("group", 3, u"Armazém"_s, u"2"_s, {u"Arca"_s, u"Forno d'Ar"_s});
        caso("all", 0, u"Todos os Sensores"_s, u"0"_s, {u"Cave"_s, u"Sótão"_s, u"Arca"_s, u"Forno d'Ar"_s});
    }

    void filtrar() {
        const QuatroSensores inst;
        const Painel v;
        QFETCH(int, linha);
        auto *botao = controlo<QAbstractButton>(v.form, u"cmdGrupos"_s);
        auto *grupos = controlo<Grelha>(v.form, u"grdGrupos"_s);
        for (const int escolha : {2, linha}) {
            clicar(v.form, u"cmdGrupos"_s);
            QVERIFY(v.visivel(u"picGrupos"_s));
            QTest::mouseClick(grupos->viewport(), Qt::LeftButton, {},
                              grupos->visualRect(grupos->model()->index(escolha, 1)).center());
            QVERIFY(!v.visivel(u"picGrupos"_s));
        }
        QTEST(botao->text(), "legenda");
        QTEST(controlo<PainelSensores>(v.form, u"PictOpccoes"_s)->tagDoFiltro(), "tag");
        QTEST(nomes(v.todos()), "lista");
    }

    void filtroEsvaziaEscolha() {
        const QuatroSensores inst;
        const Painel v;
        clicar(v.form, u"cmdAdicionarAll"_s);
        clicar(v.form, u"cmdGrupos"_s);
        auto *grupos = controlo<Grelha>(v.form, u"grdGrupos"_s);
        QTest::keyClick(grupos, Qt::Key_Return); // the same filter again
        QCOMPARE(v.escolhidos()->linhas(), 0);
        QCOMPARE(v.todos()->linhas(), 4);
    }

    void gruposComTeclado() {
        const QuatroSensores inst;
        const Painel v;
        auto *botao = controlo<QWidget>(v.form, u"cmdGrupos"_s);
        botao->setFocus();
        QTest::keyClick(botao, Qt::Key_Space);
        auto *grupos = controlo<Grelha>(v.form, u"grdGrupos"_s);
        QVERIFY(grupos->isVisible());
        QTest::keyClick(grupos, Qt::Key_Escape);
        QVERIFY(!grupos->isVisible());
        QVERIFY(v.visivel(u"PictOpccoes"_s));
        QTest::keyClick(botao, Qt::Key_Space);
        QTest::keyClick(grupos, Qt::Key_Down);
        QTest::keyClick(grupos, Qt::Key_Return);
        QCOMPARE(nomes(v.todos()), QStringList({u"Cave"_s, u"Sótão"_s}));
    }

    void falhaMantemListas() {
        QuatroSensores inst;
        const Painel v;
        clicar(v.form, u"cmdGrupos"_s);
        inst.executar(u"ALTER TABLE Sensores RENAME TO Outros"_s);
        inst.executar(u"ALTER TABLE Poseidons RENAME TO Outras"_s);
        inst.erros.esperar(u"CarregaListaGrupos"_s);
        clicar(v.form, u"cmdGrupos"_s);
        clicar(v.form, u"cmdGrupos"_s);
        QCOMPARE(controlo<Grelha>(v.form, u"grdGrupos"_s)->linhas(), 4);
    }

    void intervaloErrado_data() {
        const Tabela<QDate, QTime> caso("fim", "horaFim");
        caso("equal", QDate(2024, 3, 15), QTime(0, 0, 0));
        caso("before", QDate(2024, 3, 14), QTime(23, 59, 59));
    }

    void intervaloErrado() {
        const QuatroSensores inst;
        const Painel v;
        QFETCH(QDate, fim);
        QFETCH(QTime, horaFim);
        porData(v.form, u"DTPdataFim"_s, fim);
        controlo<QTimeEdit>(v.form, u"DTPHoraFim"_s)->setTime(horaFim);
        clicar(v.form, u"cmdAdicionarAll"_s);
        clicar(v.form, u"cmdConfirmar"_s);
        auto *marca = controlo<QLabel>(v.form, u"imgErrorDate"_s);
        QVERIFY(!marca->accessibleName().isEmpty());
        QVERIFY(controlo<QTimer>(v.form, u"TimerErrorDate"_s)->isActive());
        QVERIFY(utilizador::esperar([&] { return marca->isVisible(); }));
        QVERIFY(utilizador::esperar([&] { return !marca->isVisible(); }));
        QVERIFY(v.visivel(u"PictOpccoes"_s)); // nothing was loaded
        porData(v.form, u"DTPdataFim"_s, QDate(2024, 3, 16));
        clicar(v.form, u"cmdConfirmar"_s);
        QVERIFY(!controlo<QTimer>(v.form, u"TimerErrorDate"_s)->isActive());
        QVERIFY(!marca->isVisible());
    }

    void marcaParaEmQuarenta() {
        const QuatroSensores inst;
        const Painel v;
        porData(v.form, u"DTPdataFim"_s, QDate(2024, 3, 1));
        clicar(v.form, u"cmdConfirmar"_s);
        auto *relogio = controlo<QTimer>(v.form, u"TimerErrorDate"_s);
        QCOMPARE(relogio->interval(), 200);
        relogio->setInterval(1);
        int voltas = 0;
        connect(relogio, &QTimer::timeout, relogio, [&voltas] { ++voltas; });
        QVERIFY(utilizador::esperar([&] { return !relogio->isActive(); }));
        QCOMPARE(voltas, 40);
        QVERIFY(!v.visivel(u"imgErrorDate"_s));
    }

    void confirmarSemEscolha() {
        const QuatroSensores inst;
        const Painel v;
        porData(v.form, u"DTPdataInicio"_s, QDate(2024, 3, 1));
        clicar(v.form, u"cmdConfirmar"_s); // nothing is loaded and nothing is said
        QVERIFY(v.visivel(u"PictOpccoes"_s));
    }

    void periodo() {
        const QuatroSensores inst;
        const Painel v;
        controlo<QTimeEdit>(v.form, u"DTPhoraInicio"_s)->setTime(QTime(7, 0));
        utilizador::accao(v.form, u"mnuEsteMes"_s);
        QCOMPARE(controlo<QDateEdit>(v.form, u"DTPdataInicio"_s)->date(), QDate(2024, 3, 1));
        QCOMPARE(controlo<QTimeEdit>(v.form, u"DTPhoraInicio"_s)->time(), QTime(0, 0));
        QCOMPARE(controlo<QDateEdit>(v.form, u"DTPdataFim"_s)->date(), QDate(2024, 3, 15));
    }

    void procurarAoEscrever() {
        const QuatroSensores inst;
        const Painel v;
        v.todos()->setFocus();
        QTest::keyClicks(v.todos(), u"rno"_s);
        QCOMPARE(v.todos()->linhaActual(), 3);
        deixarPassar(2 * QApplication::keyboardInputInterval() + 50);
        QTest::keyClicks(v.todos(), u"0002"_s); // ids too
        QCOMPARE(v.todos()->linhaActual(), 1);
    }

    void opccoes() {
        const QuatroSensores inst;
        const Painel v;
        auto *botao = controlo<QAbstractButton>(v.form, u"cmdOpccoes"_s);
        const int aberta = botao->width();
        clicar(v.form, u"cmdGrupos"_s);
        clicar(v.form, u"cmdOpccoes"_s);
        QVERIFY(utilizador::esperar([&] { return !v.visivel(u"PictOpccoes"_s); }));
        QVERIFY(botao->width() < aberta);
        QTRY_VERIFY(controlo<QWidget>(v.form, u"TChart"_s)->hasFocus());
        clicar(v.form, u"cmdOpccoes"_s);
        QVERIFY(v.visivel(u"PictOpccoes"_s));
        QVERIFY(!v.visivel(u"picGrupos"_s)); // opening closed it
        QTest::keyClick(v.todos(), Qt::Key_Escape);
        QVERIFY(utilizador::esperar([&] { return !v.visivel(u"PictOpccoes"_s); }));
        QTest::keyClick(v.form, Qt::Key_F4);
        QVERIFY(utilizador::esperar([&] { return v.visivel(u"PictOpccoes"_s); }));
    }
};

QTEST_MAIN(tst_painel)
#include "tst_painel.moc"
