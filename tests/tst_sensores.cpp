#include "platform/forms/grelha.h"
#include "tests/manutencaoDeTeste.h"

using namespace utilizador;

namespace {

qint64 contar(const QString &tabela, const QString &coluna, const QString &valor) {
    Recordset rs = cnBD().consultar(u"SELECT COUNT(*) FROM %1 WHERE %2 = ?"_s.arg(tabela, coluna), {valor});
    rs.avancar();
    return rs.inteiro(0);
}

// The menu of a row is modal: its entry is taken once it has come up. Gives back its text.
QString entradaDoMenu(QDialog *dialogo, int linha) {
    auto *grelha = controlo<Grelha>(dialogo, u"grdSensores"_s);
    QString legenda;
    QTimer::singleShot(0, qApp, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            desistir(u"no menu came up"_s);
        legenda = menu->actions().constFirst()->text();
        menu->setActiveAction(menu->actions().constFirst());
        tecla(menu, Qt::Key_Return);
    });
    Q_EMIT grelha->customContextMenuRequested(grelha->visualRect(grelha->model()->index(linha, 0)).center());
    return legenda;
}

void darNovoID(QDialog *dialogo, int linha, const QString &novo, int fim = Qt::Key_Return) {
    auto *grelha = controlo<Grelha>(dialogo, u"grdSensores"_s);
    clicarEm(grelha->viewport(), grelha->visualRect(grelha->model()->index(linha, 2)).center());
    escrever(dialogo, u"txtEdit"_s, novo);
    tecla(controlo<QLineEdit>(dialogo, u"txtEdit"_s), fim);
}

QStringList resumo(QDialog *dialogo) {
    auto *grelha = controlo<Grelha>(dialogo, u"grdResumo"_s);
    QStringList linhas;
    for (int i = 0; i < grelha->linhas(); ++i)
        linhas.append(grelha->celula(i, 0) + u' ' + grelha->celula(i, 1) + u' ' + grelha->celula(i, 2));
    return linhas;
}

} // namespace

// The maintenance of sensors, worked as a user does.
class tst_sensores : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fundirEEliminar() {
        Programa programa;
        comSensores(programa.instalacao);
        programa.instalacao.dialogos.esperarMensagem(u"Alterações concluidas"_s);
        comDialogo(u"frmSensoresEdit"_s, [&](QDialog *dialogo) {
            auto *grelha = controlo<Grelha>(dialogo, u"grdSensores"_s);
            QCOMPARE(grelha->linhas(), 3);
            QVERIFY(!controlo<QWidget>(dialogo, u"cmdConfirmar"_s)->isEnabled());
            darNovoID(dialogo, 0, u"X9"_s, Qt::Key_Escape);
            QCOMPARE(grelha->celula(0, 2), QString());
            darNovoID(dialogo, 0, u"B2"_s);
            QCOMPARE(entradaDoMenu(dialogo, 2), u"Eliminar"_s);
            QCOMPARE(grelha->estadoDaLinha(2), EstadoDaLinha::PorEliminar);
            QCOMPARE(entradaDoMenu(dialogo, 2), u"Anular Eliminar"_s);
            QVERIFY(grelha->estadoDaLinha(2) != EstadoDaLinha::PorEliminar);
            entradaDoMenu(dialogo, 2);
            QVERIFY(!controlo<QWidget>(dialogo, u"cmdConfirmar"_s)->isEnabled()); // what it does was not shown yet
            const QStringList esperado = {u"Temperaturas 3 3"_s, u"Sensores 0 2"_s};
            QVERIFY(esperar([&] { return resumo(dialogo) == esperado; }));
            QVERIFY(esperar([&] { return controlo<QWidget>(dialogo, u"cmdConfirmar"_s)->isEnabled(); }));
            clicar(dialogo, u"cmdConfirmar"_s);
            QCOMPARE(grelha->linhas(), 1); // what is done is gone
            QVERIFY(dialogo->isVisible());
            QVERIFY(programa.principal->isEnabled());
        });
        QCOMPARE(contar(u"Temperaturas"_s, u"Sensor"_s, u"A1"_s), 0);
        QCOMPARE(contar(u"Temperaturas"_s, u"Sensor"_s, u"B2"_s), 6);
        QCOMPARE(contar(u"Temperaturas"_s, u"Sensor"_s, u"C3"_s), 0);
        QCOMPARE(contar(u"Pressao"_s, u"Sensor"_s, u"A1"_s), 1); // stays under the old name
        QCOMPARE(contar(u"Sensores"_s, u"SensorID"_s, u"B2"_s), 1);
        // The copy holds what stood there before.
        const QDir pasta(programa.instalacao.ficheiro(u"BD"_s));
        const QStringList copias = pasta.entryList({u"Kelvark*20*"_s}, QDir::Files);
        QCOMPARE(copias.size(), 1);
        Ligacao copia;
        copia.abrir(pasta.filePath(copias.constFirst()));
        Recordset rs = copia.consultar(u"SELECT COUNT(*) FROM Temperaturas WHERE Sensor = 'C3'"_s);
        QVERIFY(rs.avancar());
        QCOMPARE(rs.inteiro(0), 3);
    }

    void peloTeclado() {
        Programa programa;
        comSensores(programa.instalacao);
        comDialogo(u"frmSensoresEdit"_s, [&](QDialog *dialogo) {
            auto *grelha = controlo<Grelha>(dialogo, u"grdSensores"_s);
            grelha->setFocus();
            tecla(grelha, Qt::Key_Delete);
            QCOMPARE(grelha->estadoDaLinha(0), EstadoDaLinha::PorEliminar);
            tecla(grelha, Qt::Key_Delete);
            QVERIFY(grelha->estadoDaLinha(0) != EstadoDaLinha::PorEliminar);
            tecla(grelha, Qt::Key_Down);
            tecla(grelha, Qt::Key_Return);
            escrever(dialogo, u"txtEdit"_s, u"Z7"_s);
            tecla(controlo<QLineEdit>(dialogo, u"txtEdit"_s), Qt::Key_Return);
            QCOMPARE(grelha->celula(1, 2), u"Z7"_s);
            auto *resumida = controlo<QLabel>(dialogo, u"lblResumo"_s);
            QVERIFY(esperar([&] { return resumida->text().contains(u"nenhum sensor tem o identificador \"Z7\""); }));
        });
        QCOMPARE(contar(u"Sensores"_s, u"SensorID"_s, u"B2"_s), 1); // nothing was confirmed
    }

    void fechadoAMeio() {
        Programa programa;
        comSensores(programa.instalacao, 40000);
        comDialogo(u"frmSensoresEdit"_s, [&](QDialog *dialogo) {
            entradaDoMenu(dialogo, 0);
            auto *resumida = controlo<QLabel>(dialogo, u"lblResumo"_s);
            QVERIFY(esperar([&] { return resumo(dialogo).size() == 2; }));
            // Closed once the tables are being changed.
            QTimer vigia;
            connect(&vigia, &QTimer::timeout, dialogo, [&] {
                if (resumida->text().startsWith(u"A alterar"))
                    dialogo->close();
            });
            vigia.start(1);
            clicar(dialogo, u"cmdConfirmar"_s);
            QVERIFY(!dialogo->isVisible());
        });
        QVERIFY(programa.principal->isEnabled());
        QCOMPARE(contar(u"Temperaturas"_s, u"Sensor"_s, u"A1"_s), 40000);
        QCOMPARE(contar(u"Sensores"_s, u"SensorID"_s, u"A1"_s), 1);
    }

    // Without its copy nothing is changed.
    void semCopia() {
        Programa programa;
        comSensores(programa.instalacao);
        programa.instalacao.erros.esperar(u"frmSensoresEdit.cmdConfirmar_Click"_s);
        comDialogo(u"frmSensoresEdit"_s, [&](QDialog *dialogo) {
            entradaDoMenu(dialogo, 0);
            QVERIFY(esperar([&] { return resumo(dialogo).size() == 2; }));
            const QString bd = programa.instalacao.ficheiro(u"BD"_s);
            QVERIFY(QDir().rename(bd, bd + u"-fora"));
            clicar(dialogo, u"cmdConfirmar"_s);
            QVERIFY(QDir().rename(bd + u"-fora", bd));
            QCOMPARE(controlo<Grelha>(dialogo, u"grdSensores"_s)->estadoDaLinha(0), EstadoDaLinha::PorEliminar);
        });
        QCOMPARE(contar(u"Temperaturas"_s, u"Sensor"_s, u"A1"_s), 3);
    }

    // The hint to the right button shows over the rows; a name that is cut shows itself.
    void dicas() {
        Programa programa;
        const QString longo = u"Uma câmara com um nome que não cabe em coluna nenhuma desta janela, de tão comprido"_s;
        programa.instalacao.sensores({{u"A1"_s, u"Câmara 1"_s}, {u"B2"_s, longo}});
        comDialogo(u"frmSensoresEdit"_s, [&](QDialog *dialogo) {
            auto *grelha = controlo<Grelha>(dialogo, u"grdSensores"_s);
            const auto dica = [&](int linha) {
                const QPoint onde = grelha->visualRect(grelha->model()->index(linha, 0)).center();
                QHelpEvent pedido(QEvent::ToolTip, onde, grelha->viewport()->mapToGlobal(onde));
                QApplication::sendEvent(grelha->viewport(), &pedido);
                return QToolTip::text();
            };
            QCOMPARE(dica(0), u"Click direito para eliminar"_s);
            QCOMPARE(dica(1), longo);
        });
    }
};

QTEST_MAIN(tst_sensores)
#include "tst_sensores.moc"
