#include "tests/cenaGrafico.h"

// The form of a chart's points.
class tst_pontos : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void formDePontos() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1),
                      {{dia + u"10:00:00"_s, 10.0}, {dia + u"10:00:01"_s, 21.5, QVariant(), u"velha"_s}});
        const Grafico g;
        g.carregar({1});
        g.clicarPonto(0, 1);
        QDialog *p = g.pontos();
        QVERIFY(p && p->isModal());
        QVERIFY(!g.chart().ZoomEnable());
        QCOMPARE(controlo<QLineEdit>(p, u"txtData"_s)->text(), u"15/03/2024 10:00:01"_s);
        QCOMPARE(controlo<QLineEdit>(p, u"txtTemperatura"_s)->text(), u"21,5"_s);
        QCOMPARE(controlo<QLineEdit>(p, u"txtSensor"_s)->text(), id(1));
        QCOMPARE(controlo<QLineEdit>(p, u"txtNomeSensor"_s)->text(), u"Sensor 1"_s);
        QVERIFY(controlo<QLineEdit>(p, u"txtSensor"_s)->isReadOnly());
        auto *nota = controlo<QPlainTextEdit>(p, u"txtObservacoes"_s);
        QCOMPARE(nota->toPlainText(), u"velha"_s);
        QCOMPARE(nota->textCursor().position(), 5);
        QTest::keyClicks(nota, u", it's open  "_s);
        clicar(p, u"cmdConcluir"_s);
        QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas ORDER BY Data DESC"_s).value(0).toString(),
                 u"velha, it's open"_s);
        QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas ORDER BY Data"_s).value(0).toString(), u" "_s);
        QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList({u" "_s, u"!"_s}));
        QVERIFY(utilizador::esperar([&] { return g.chart().ZoomEnable() && !g.pontos(); }));
    }

    void notas_data() {
        // serie: that is clicked; 2 is the lower limit
        const Tabela<int, QString, bool, QString, QString> caso("serie", "escrita", "desistir", "fica", "marca");
        caso("given up", 0, u"outra"_s, true, u"velha"_s, u"!"_s);
        caso("erased", 0, {}, false, u" "_s, u" "_s);
        caso("erased through a limit", 2, {}, false, u" "_s, u" "_s);
    }

    void notas() {
        QFETCH(int, serie);
        QFETCH(QString, escrita);
        QFETCH(bool, desistir);
        QFETCH(QString, fica);
        QFETCH(QString, marca);
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1),
                      {{dia + u"10:00:00"_s, 10.0}, {dia + u"10:05:00"_s, 11.0, u"30XXX5"_s, u"velha"_s}});
        const Grafico g;
        g.carregar({1});
        g.clicarPonto(serie, serie == 0 ? 1 : 0);
        QCOMPARE(controlo<QLineEdit>(g.pontos(), u"txtTemperatura"_s)->text(), serie == 0 ? u"11"_s : u"5"_s);
        QCOMPARE(controlo<QLineEdit>(g.pontos(), u"txtSensor"_s)->text(), id(1));
        auto *nota = controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s);
        nota->selectAll();
        QTest::keyClick(nota, Qt::Key_Delete);
        QTest::keyClicks(nota, escrita);
        if (desistir)
            QTest::keyClick(nota, Qt::Key_Escape);
        else
            QTest::keyClick(nota, Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(utilizador::esperar([&] { return !g.pontos(); }));
        QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas WHERE Temperatura = 11"_s).value(0).toString(), fica);
        QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList({u" "_s, marca}));
        if (serie > 0)
            QCOMPARE(g.chart().Series(serie).PointLabel(0), marca);
    }

    void notaRecusada_data() {
        const Tabela<QString, QString, QString, QString> caso("antes", "entretanto", "aviso", "lida");
        const QString nada;
        const QString apagar = u"DELETE FROM Temperaturas"_s;
        caso("gone before it was opened", apagar, nada, u"já não está"_s, nada);
        caso("gone meanwhile", nada, apagar, u"já não está"_s, u"velha"_s);
        caso("another value", u"UPDATE Temperaturas SET Temperatura = 11"_s, nada, u"já não está"_s, nada);
        caso("changed meanwhile", nada, u"UPDATE Temperaturas SET flag = 'do colega'"_s, u"\"do colega\""_s,
             u"velha"_s);
    }
    // The user is told, the text stays in the box, and the chart does not claim a note.
    void notaRecusada() {
        QFETCH(const QString, antes);
        QFETCH(const QString, entretanto);
        QFETCH(const QString, aviso);
        QFETCH(const QString, lida);
        Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, {}, u"velha"_s}});
        const Grafico g;
        g.carregar({1});
        cnBD().executarGuiao(antes);
        g.clicarPonto(0, 0);
        auto *nota = controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s);
        QCOMPARE(nota->toPlainText(), lida);
        QTest::keyClicks(nota, u", nova"_s);
        cnBD().executarGuiao(entretanto);
        const QVariantList ficou = inst.linha(u"SELECT flag, Temperatura FROM Temperaturas"_s);
        inst.dialogos.esperarMensagem(aviso);
        clicar(g.pontos(), u"cmdConcluir"_s);
        QVERIFY(g.pontos() && g.pontos()->isVisible());
        QCOMPARE(nota->toPlainText(), lida + u", nova");
        QCOMPARE(inst.linha(u"SELECT flag, Temperatura FROM Temperaturas"_s), ficou);
        QTest::keyClick(nota, Qt::Key_Escape);
        QVERIFY(utilizador::esperar([&] { return !g.pontos(); }));
    }

    // Opened and concluded: a colleague's note of meanwhile stays, and Null does not become a blank.
    void notaPorAlterar() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, {}, QVariant()}});
        const Grafico g;
        g.carregar({1});
        g.clicarPonto(0, 0);
        inst.executar(u"UPDATE Temperaturas SET flag = 'do colega'"_s);
        auto *nota = controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s);
        QTest::keyClicks(nota, u"x"_s);
        QTest::keyClick(nota, Qt::Key_Backspace);
        clicar(g.pontos(), u"cmdConcluir"_s);
        QVERIFY(utilizador::esperar([&] { return !g.pontos(); }));
        QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas"_s), QVariantList({u"do colega"_s}));
    }

    // Of two readings of one second it is the one that was clicked.
    void notaDaLeituraClicada() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 9.0}, {dia + u"10:00:00"_s, u"1,5"_s}});
        const Grafico g;
        g.carregar({1});
        QCOMPARE(g.chart().Series(0).y(), (std::vector<double>{9, 1.5})); // as they were written
        g.clicarPonto(0, 1);
        QTest::keyClicks(controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s), u"porta"_s);
        clicar(g.pontos(), u"cmdConcluir"_s);
        QCOMPARE(inst.linha(u"SELECT Temperatura FROM Temperaturas WHERE flag = 'porta'"_s), QVariantList({u"1,5"_s}));
    }

    void notaQueFalha() {
        Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, QVariant(), u" "_s}});
        const Grafico g;
        g.carregar({1});
        g.clicarPonto(0, 0);
        QTest::keyClicks(controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s), u"longa"_s);
        inst.executar(u"CREATE TRIGGER nao BEFORE UPDATE ON Temperaturas BEGIN SELECT RAISE(ABORT, 'no notes'); END"_s);
        inst.erros.esperar(u"no notes"_s);
        clicar(g.pontos(), u"cmdConcluir"_s);
        QVERIFY(g.pontos() && g.pontos()->isVisible()); // the text is not lost
        QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList{u" "_s});
        g.pontos()->close();
    }

    // Averages have two decimals wherever they are read.
    void casasDasMedias() {
        const Instalada inst;
        inst.leituras(u"Medias"_s, id(1), {{dia + u"10:00:00"_s, 21.5}});
        const Grafico g(u"frmGraficoPrincipal"_s);
        g.carregar({1});
        QTest::keyClick(&g.chart(), Qt::Key_Right);
        QVERIFY(g.chart().accessibleDescription().contains(u"21,50 °C"));
        g.clicarPonto(0, 0);
        QWidget *ponto = registoForms().form(u"frmOpccoesMediasPontos"_s);
        QCOMPARE(controlo<QLineEdit>(ponto, u"txtTemperatura"_s)->text(), u"21,50"_s);
        ponto->close();
    }

    void botaoDireito() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0}});
        const Grafico g;
        g.carregar({1});
        g.clicarPonto(0, 0, Qt::RightButton);
        QVERIFY(!g.pontos());
        QVERIFY(utilizador::esperar([&] { return g.chart().ZoomEnable(); }));
    }
};

QTEST_MAIN(tst_pontos)
#include "tst_pontos.moc"
