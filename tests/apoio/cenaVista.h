#pragma once

#include "platform/chart/TChart.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "platform/report/JanelaRelatorio.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

using utilizador::clicar;
using utilizador::controlo;

inline const QString dia = u"2024-03-15 "_s;
constexpr quint32 vermelho = 255;
constexpr quint32 verde = 65280;
constexpr quint32 azul = 16711680;

// A view as the menu opens it, beside a main window that owns dialogs.
struct Vista {
    explicit Vista(void (*registar)(RegistoForms &)) {
        registoForms().dono = &principal;
        principal.show();
        registar(registoForms());
    }
    ~Vista() { delete form; }

    void abrir(const QString &nome) {
        delete form;
        form = registoForms().abrir(nome);
        utilizador::mostrar(form);
        deixarPassar(20); // a chart is set up a moment after its form
    }
    void confirmar() const {
        clicar(form, u"cmdConfirmar"_s);
        QVERIFY(utilizador::esperar([this] { return principal.isEnabled(); }));
    }
    TChart &chart() const { return *controlo<TChart>(form, u"TChart"_s); }
    QTableView &grelha() const { return *controlo<QTableView>(form, u"DataGrid"_s); }
    QString celula(int linha, int coluna) const { return grelha().model()->index(linha, coluna).data().toString(); }
    QStringList coluna(int qual) const {
        QStringList celulas;
        for (int i = 0; i < grelha().model()->rowCount(); ++i)
            celulas.append(celula(i, qual));
        return celulas;
    }
    QString legenda(const QString &nome) const { return controlo<QLabel>(form, nome)->text(); }
    bool permitido(const QString &nome) const { return controlo<QWidget>(form, nome)->isEnabled(); }
    bool visivel(const QString &nome) const { return controlo<QWidget>(form, nome)->isVisible(); }

    // As the chart says it; the place is one where no point is, so that the index counts.
    void clicarPonto(int serie, int indice, Qt::MouseButton botao = Qt::LeftButton) const {
        Q_EMIT chart().OnClickSeries(serie, indice, botao, Qt::NoModifier, QPoint(-1000, -1000));
    }
    // Opens the form of a point, writes its note and concludes.
    void notar(const QString &pontos, int serie, int indice, const QString &nota) const {
        clicarPonto(serie, indice);
        QWidget *aberto = registoForms().form(pontos);
        QVERIFY2(aberto, qPrintable(pontos));
        auto *caixa = controlo<QPlainTextEdit>(aberto, u"txtObservacoes"_s);
        caixa->setPlainText(nota);
        caixa->document()->setModified(true);
        clicar(aberto, u"cmdConcluir"_s);
    }

    static JanelaRelatorio *previsao(const QString &relatorio = {}) {
        for (QWidget *topo : QApplication::topLevelWidgets())
            if (auto *janela = qobject_cast<JanelaRelatorio *>(topo);
                janela && (relatorio.isEmpty() ? janela->isVisible() : janela->objectName() == relatorio))
                return janela;
        return nullptr;
    }
    // A text in the heading of the report.
    static QString impresso(JanelaRelatorio *janela, const QString &controlo) {
        return janela ? janela->relatorio().Sections(u"Section4"_s)->controlo(controlo)->Caption : u"no preview"_s;
    }
    QString impresso(const QString &controlo) const {
        clicar(form, u"cmdImprimir"_s);
        const QPointer<JanelaRelatorio> janela = previsao();
        const QString texto = impresso(janela, controlo);
        if (janela)
            janela->close();
        return texto;
    }

    QWidget principal;
    QPointer<QWidget> form;
};

// With an installation, at noon.
struct CenaVista : Instalacao, Vista {
    explicit CenaVista(void (*registar)(RegistoForms &)) : Vista(registar) { relogio(dia + u"12:00:00"); }

    QByteArray exportarCSV(const QString &proposto = {}) {
        const QString caminho = ficheiro(u"saida.csv"_s);
        dialogos.responderGravar(caminho, proposto);
        dialogos.esperarMensagem(u"sucesso"_s);
        form->findChild<QAction *>(u"mnuExportCSV"_s)->trigger();
        return lerFicheiro(caminho);
    }
};
