// Every entry of the menu as a user goes through it: open, choose, confirm, export, print, close.
#include "core/modErros.h"
#include "core/perfil.h"
#include "demo/gerador.h"
#include "devicestate/forms/listaMarcada.h"
#include "platform/chart/TChart.h"
#include "platform/forms/dialogosQt.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "platform/report/JanelaRelatorio.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "shell/menu.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/hostil.h"
#include "tests/apoio/widgets.h"
#include "views/grandezas.h"

namespace {

constexpr qint64 linhasDaDemonstracao = 60'000;
// Three views a table of readings and the alarms of each quantity; the others are of Sens-UI, devices, missions.
constexpr int quantasVistas = int(3 * grandezas::vistas.size() + std::size(grandezas::tabela)) + 17;
const QString agora = u"2026-06-15 12:00:00"_s;

template <typename T>
T *filho(QWidget *form, const QString &nome) {
    return form->findChild<T *>(nome);
}

// Everything that the panel offers, over all dates; a mission brings its own range.
void escolherTudo(QWidget *form) {
    if (auto *todos = filho<QAbstractButton>(form, u"cmdAdicionarAll"_s))
        todos->click();
    for (const QString &nome : {u"grdDispositivos"_s, u"grdInputs"_s, u"grdCondicoes"_s})
        if (auto *lista = qobject_cast<ListaMarcada *>(filho<QTableView>(form, nome)))
            for (int i = 0; i < lista->linhas(); ++i)
                lista->marcar(i, true);
    if (filho<QTableView>(form, u"grdSensoresMissao"_s))
        return;
    // Listings of readings have many pages to print.
    const bool muitas = form->objectName().startsWith(u"frmListagemObservacoes");
    if (auto *inicio = filho<QDateEdit>(form, u"DTPdataInicio"_s))
        inicio->setDate(muitas ? QDate(2026, 5, 1) : QDate(2024, 1, 1));
}

bool comDados(QWidget *form) {
    if (auto *grelha = filho<QTableView>(form, u"DataGrid"_s))
        return grelha->model()->rowCount() > 0;
    if (auto *chart = filho<TChart>(form, u"TChart"_s))
        for (int i = 0; i < chart->SeriesCount(); ++i)
            if (chart->Series(i).Count() > 0)
                return true;
    return false;
}

struct Percurso {
    explicit Percurso(Instalacao &i) : instalacao(i) {
        modMain::registarForms(registoForms());
        principal = std::make_unique<frmMain>();
        principal->show();
    }

    // With all menus above it.
    bool oferecida(const EntradaMenu &entrada) const {
        if (!principal->findChild<QAction *>(entrada.chave.toString())->isVisible())
            return false;
        for (const EntradaMenu &pai : menuPrincipal())
            if (pai.chave == entrada.pai)
                return oferecida(pai);
        return true;
    }

    void exportar(QWidget *form) {
        const QString base = instalacao.ficheiro(form->objectName());
        if (auto *csv = filho<QAction>(form, u"mnuExportCSV"_s)) {
            instalacao.dialogos.responderGravar(base + u".csv", u"csv"_s);
            instalacao.dialogos.esperarMensagem(u"Exportação concluida com sucesso"_s);
            csv->trigger();
            QVERIFY2(QFileInfo(base + u".csv").size() > 0, qPrintable(base));
        }
        auto *jpg = filho<QAction>(form, u"mnuExportJPG"_s);
        auto *botao = filho<QAbstractButton>(form, u"cmdJPG"_s);
        if (!jpg && !botao)
            return;
        instalacao.dialogos.responderGravar(base + u".jpg", u"jpg"_s);
        instalacao.dialogos.esperarMensagem(base + u".jpg");
        jpg ? jpg->trigger() : botao->click();
        QCOMPARE(QImage(base + u".jpg").size(), QSize(1050, 506));
    }

    void imprimir(QWidget *form) {
        filho<QAbstractButton>(form, u"cmdImprimir"_s)->click();
        QPointer<JanelaRelatorio> janela;
        for (QWidget *topo : QApplication::topLevelWidgets())
            if (auto *aberta = qobject_cast<JanelaRelatorio *>(topo); aberta && aberta->isVisible())
                janela = aberta;
        QVERIFY2(janela, qPrintable(form->objectName()));
        const QString pdf = instalacao.ficheiro(form->objectName() + u".pdf");
        QVERIFY(janela->gravarPDF(pdf));
        QVERIFY(QFileInfo(pdf).size() > 1000);
        janela->close();
    }

    bool confirmar(QWidget *form) {
        filho<QAbstractButton>(form, u"cmdConfirmar"_s)->click();
        if (!utilizador::esperar([this] { return principal->isEnabled(); }, 30'000))
            QTest::qFail("the load does not end", __FILE__, __LINE__);
        return comDados(form);
    }

    // One mission after the other, until there is something to see.
    bool confirmarMissao(QWidget *form, Grelha *registadores, Grelha *missoes) {
        for (int r = 0; r < registadores->linhas(); ++r) {
            registadores->setLinhaActual(r);
            for (int m = 0; m < missoes->linhas(); ++m) {
                missoes->setLinhaActual(m);
                if (confirmar(form))
                    return true;
            }
        }
        return false;
    }

    // A view from its confirmation to the printed page; false when it had nothing to show.
    bool percorrer(QWidget *form) {
        escolherTudo(form);
        auto *missoes = filho<Grelha>(form, u"grdSensoresMissao"_s);
        const bool cheio =
            missoes ? confirmarMissao(form, filho<Grelha>(form, u"grdSensoresAll"_s), missoes) : confirmar(form);
        if (cheio) {
            exportar(form);
            imprimir(form);
        }
        return cheio;
    }

    // The form of the first point of every series.
    static void olharPontos(TChart *chart) {
        for (int i = 0; i < std::min(chart->SeriesCount(), 6); ++i) {
            if (chart->Series(i).Count() == 0)
                continue;
            Q_EMIT chart->OnClickSeries(i, 0, Qt::LeftButton, Qt::NoModifier, QPoint(-1000, -1000));
            const QWidgetList topos = QApplication::topLevelWidgets();
            const auto aberto = std::find_if(topos.begin(), topos.end(), [](const QWidget *topo) {
                return topo->isVisible() && topo->objectName().startsWith(u"frmOpccoes");
            });
            if (aberto == topos.end())
                continue;
            QCOMPARE(hostil::queixas(*aberto).join(u'\n'), QString());
            (*aberto)->close();
        }
    }

    // All that a window shows, with the list of groups, the reading of a point and its form.
    void olhar(QWidget *form) const {
        if (auto *grupos = filho<QAbstractButton>(form, u"cmdGrupos"_s)) {
            filho<QAbstractButton>(form, u"cmdOpccoes"_s)->click();
            grupos->click();
            auto *lista = filho<Grelha>(form, u"grdGrupos"_s);
            lista->setLinhaActual(1);
            QCOMPARE(hostil::queixas(form).join(u'\n'), QString());
            Q_EMIT lista->RequestEdit(1);
        }
        if (auto *chart = filho<TChart>(form, u"TChart"_s))
            QTest::keyClick(chart, Qt::Key_Right);
        if (auto *chart = filho<TChart>(form, u"TChart"_s))
            olharPontos(chart);
        for (QWidget *janela : {form, static_cast<QWidget *>(principal.get())})
            QCOMPARE(hostil::queixas(janela).join(u'\n'), QString());
    }

    Instalacao &instalacao;
    std::unique_ptr<frmMain> principal;
};

} // namespace

class TestePercurso : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void menu_data() {
        const Tabela<bool, QString, bool> caso("cheia", "antes", "deFora");
        caso("full database", true, {}, false);
        caso("without the optional table", true, u"DROP TABLE MaskListaAlarmes"_s, false);
        caso("empty database", false, {}, false);
        caso("names and notes that an attacker wrote", true, {}, true);
    }
    void menu() {
        QFETCH(const bool, cheia);
        QFETCH(const QString, antes);
        QFETCH(const bool, deFora);
        Instalacao instalacao(cheia ? Instalacao::Base::Nenhuma : Instalacao::Base::Vazia);
        instalacao.relogio(agora);
        if (cheia) {
            demonstracao::Pedido pedido;
            pedido.linhas = linhasDaDemonstracao;
            pedido.fim = QDateTime::fromString(agora, u"yyyy-MM-dd HH:mm:ss"_s);
            pedido.fim.setTimeSpec(Qt::UTC);
            QDir().mkpath(QFileInfo(instalacao.caminhoBD()).path());
            demonstracao::fazerBase(instalacao.caminhoBD(), pedido);
            instalacao.abrirBase();
        }
        if (cheia) // so short a history has few alarms
            for (const auto &[tabela, tipo] :
                 {std::pair(u"AlarmesHum"_s, u"%\\%"_s), std::pair(u"AlarmesPressao"_s, u"%K"_s)})
                instalacao.executar(u"INSERT INTO %1 SELECT SensorID, Descricao, '2026-06-01 10:00:00', 60, 20, 61.5 "
                                    "FROM Sensores WHERE Tipo LIKE ? ESCAPE '\\' LIMIT 1"_s.arg(tabela),
                                    {tipo});
        if (deFora)
            hostil::estragar(instalacao);
        instalacao.erros.tolerante = deFora; // of limits that are none; they are looked at below
        // Where the table is missing, each building of the menu says so; nothing else does.
        if (!antes.isEmpty()) {
            instalacao.executar(antes);
            instalacao.erros.esperar(u"VerificaSeTabelaExiste_MaskListaAlarmes"_s);
        }
        QStringList semTexto; // asked for on the way and in no language file
        estado().ambiente.textoPedido = [&](const QString &seccao, const QString &chave, const QString &omissao) {
            const QString linha = seccao + u'\t' + chave + u'\t' + omissao;
            if (!m_textos.valor(seccao, chave) && !semTexto.contains(linha))
                semTexto.append(linha);
        };
        Percurso p(instalacao);
        int vistas = 0;
        QStringList semDados;
        for (const EntradaMenu &entrada : menuPrincipal()) {
            const QString nome = entrada.form.toString();
            auto *accao = p.principal->findChild<QAction *>(entrada.chave.toString());
            QVERIFY2(accao, qPrintable(entrada.chave.toString()));
            if (nome.isEmpty())
                continue;
            QVERIFY2(registoForms().construido(nome), qPrintable(nome));
            if (entrada.accao != AccaoMenu::Form)
                continue;
            // What the menu does not offer for want of data must open all the same.
            if (p.oferecida(entrada))
                accao->trigger();
            else if (antes.isEmpty())
                registoForms().abrir(nome);
            else
                continue;
            const QPointer<QWidget> form = registoForms().form(nome);
            QVERIFY2(form, qPrintable(nome));
            deixarPassar(20);
            if (filho<QAbstractButton>(form, u"cmdConfirmar"_s)) {
                ++vistas;
                if (!p.percorrer(form))
                    semDados.append(nome);
            }
            if (deFora)
                p.olhar(form);
            if (QTest::currentTestFailed())
                return;
            fechado(form);
        }
        QCOMPARE(vistas, antes.isEmpty() ? quantasVistas : quantasVistas - 1);
        if (cheia)
            QCOMPARE(semDados.join(u' '), QString());
        else
            QCOMPARE(semDados.size(), vistas);
        for (const QString &linha : std::as_const(semTexto))
            qInfo("%s", qPrintable(linha));
        QCOMPARE(semTexto.size(), 0);
        QCOMPARE(instalacao.erros.mensagens.isEmpty(), !deFora && antes.isEmpty());
        for (const QString &mensagem : std::as_const(instalacao.erros.mensagens))
            QVERIFY2(!deFora || mensagem.contains(u" de fora: "), qPrintable(mensagem));
        if (!deFora)
            QCOMPARE(modINI::GetSetting(u"Errors"_s, u"INDEX"_s, u"ID"_s).toInt(), antes.isEmpty() ? 0 : 1);
        instalacao.verificar();
    }

    // The boxes that tell of such names, and the dialog of errors.
    void mensagens() {
        const Instalacao instalacao(Instalacao::Base::Nenhuma);
        ApresentadorQt apresentador;
        DialogosQt dialogos;
        estado().ambiente.apresentador = &apresentador;
        for (const QString &texto : hostil::textos()) {
            QStringList queixas{u"no box"_s};
            QTimer::singleShot(0, qApp, [&queixas] {
                QWidget *caixa = QApplication::activeModalWidget();
                queixas = hostil::queixas(caixa);
                caixa->close();
            });
            dialogos.mensagem(texto, Dialogos::Estilo::Informacao);
            QCOMPARE(queixas.join(u'\n'), QString());
            modErros::TratarErro(u"frmX.Y"_s, texto, u"13"_s);
            const QPointer<QWidget> erro = registoForms().form(u"frmErro"_s);
            QVERIFY(erro);
            QCOMPARE(hostil::queixas(erro).join(u'\n'), QString());
            filho<QAbstractButton>(erro, u"cmdDetalhe"_s)->click();
            QCOMPARE(hostil::queixas(erro).join(u'\n'), QString());
            fechado(erro);
        }
    }

private:
    static void fechado(const QPointer<QWidget> &form) {
        form->close();
        QTRY_VERIFY(!form);
    }
    const Perfil m_textos{Instalacao::lerFicheiro(QStringLiteral(VISTREL_FONTES) + u"/../languages/Kelvark-PT.ini"_s)};
};

QTEST_MAIN(TestePercurso)
#include "tst_percurso.moc"
