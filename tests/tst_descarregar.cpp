// The list of units as a user works it, with virtual units behind.
#include "platform/forms/registoForms.h"
#include "poseidon/descarga/logBruto.h"
#include "poseidon/forms/frmDescarregar2251.h"
#include "poseidon/forms/registar.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/widgets.h"
#include "tests/log2251.h"
#include "tests/unidadesDeTeste.h"

using simulador::Defeito;
using simulador::Defeitos;
using utilizador::controlo;
using utilizador::tecla;

namespace {

// A unit that the database knows, ticked.
std::unique_ptr<simulador::Unidade> conhecida(Defeitos defeitos = {}, const QString &endereco = u"127.0.0.2"_s) {
    auto u = ligarUnidade(definicao(defeitos, 100, endereco));
    cnBD().executar(
        u"INSERT INTO Poseidons (PoseidonIP, Nome, Modelo, Mac, Porta, m, VistrelS, ApagarLog, NLeiturasM) "
        "VALUES (?,?,?,?,?,'AUT',1,0,3)"_s,
        {u->endereco(), u->definicao().nome, u->definicao().modelo, u->definicao().mac, int(u->portaWeb())});
    return u;
}

// The window as the menu opens it, once its first search is over.
struct Janela {
    Janela() {
        registarPoseidon(registoForms());
        form = qobject_cast<frmDescarregar2251 *>(registoForms().abrir(u"frmDescarregar2251"_s));
        utilizador::mostrar(form);
        form->activateWindow();
        esperarLivre();
    }
    ~Janela() { delete form; }
    void esperarLivre() const {
        deixarPassar(1);
        if (!utilizador::esperar([this] { return form->isEnabled(); }, 15000))
            utilizador::desistir(u"the window never came back"_s);
    }
    void clicar(const QString &botao) const { utilizador::clicar(form, botao); }
    void descarregar() const {
        clicar(u"cmdDescarregar"_s);
        esperarLivre();
    }
    QString texto(const QString &caixa) const { return controlo<QLineEdit>(form, caixa)->text(); }
    GrelhaDispositivos *grelha() const { return controlo<GrelhaDispositivos>(form, u"grdDispositivos"_s); }
    QString celula(int linha, Coluna c) const {
        return grelha()->model()->index(linha - 1, int(c) - 1).data().toString();
    }
    void irPara(int linha, Coluna c) const {
        grelha()->setFocus();
        grelha()->setCurrentIndex(grelha()->model()->index(linha - 1, int(c) - 1));
    }
    // Types into the cell; `fim` ends the edit.
    void editar(int linha, Coluna c, const QString &texto, Qt::Key fim = Qt::Key_Return) const {
        irPara(linha, c);
        tecla(grelha(), Qt::Key_F2);
        utilizador::escrever(form, u"txtEdit"_s, texto);
        tecla(controlo<QLineEdit>(form, u"txtEdit"_s), fim);
        deixarPassar(10); // the editor goes by events
    }
    void menu(int linha, const QString &entrada) const {
        irPara(linha, Coluna::IP);
        QContextMenuEvent pedido(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
        QApplication::sendEvent(grelha()->viewport(), &pedido);
        auto *m = controlo<QMenu>(form, u"mnuDispositivo"_s);
        auto *accao = qobject_cast<QAction *>(utilizador::procurar(form, entrada));
        utilizador::clicarEm(m, m->actionGeometry(accao).center());
        QCoreApplication::processEvents();
    }
    QString info() const {
        auto *l = controlo<QLabel>(form, u"lblInfoDesc"_s);
        return l->isVisible() ? l->text() : QString();
    }
    bool visivel(const QString &nome) const { return controlo<QWidget>(form, nome)->isVisible(); }
    bool podeDescarregar() const { return controlo<QWidget>(form, u"cmdDescarregar"_s)->isEnabled(); }
    QPointer<frmDescarregar2251> form;
};

} // namespace

class tst_descarregar : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_instalacao = std::make_unique<log2251::BaseRapida>();
        definir(u"PesquisaDuracao"_s, u"200"_s);
        definir(u"Pesquisa"_s, u"127.0.0.9:9"_s);
        definir(u"LogEspera"_s, u"500"_s);
    }
    void cleanup() { m_instalacao.reset(); }

    void pesquisaMarcaDescarrega() {
        const auto u = ligarUnidade();
        definir(u"Pesquisa"_s, u"127.0.0.2:"_s + QString::number(u->portaPesquisa()));
        bool menus = false;
        registoForms().alterarEstadosMenus = [&] { menus = true; };
        Janela j;
        QCOMPARE(j.grelha()->model()->rowCount(), 1);
        QCOMPARE(j.celula(1, Coluna::TIPO), u"Poseidon 2251"_s);
        QCOMPARE(j.celula(1, Coluna::DESCRICAO), u"Unidade 2"_s);
        QVERIFY(!j.podeDescarregar());
        j.irPara(1, Coluna::IP);
        tecla(j.grelha(), Qt::Key_Space);
        QVERIFY(j.podeDescarregar());
        j.clicar(u"chkClearMemory"_s);
        j.clicar(u"cmdDescarregar"_s);
        QVERIFY(!j.form->isEnabled());
        QVERIFY(j.visivel(u"ProgressBar"_s));
        const auto *barra = controlo<QProgressBar>(j.form, u"ProgressBar"_s);
        const int valor = barra->value();
        QTRY_VERIFY(barra->value() > valor);
        j.esperarLivre();
        QVERIFY(!barra->isVisible());
        QCOMPARE(j.info(), u"Dados tranferidos com sucesso"_s);
        QCOMPARE(j.celula(1, Coluna::DSTAT),
                 u"Dados tranferidos com sucesso: 200 linhas lidas, 0 não lidas; guardadas: 736 temperaturas, 368 "
                 "humidades, 736 médias, 392 entradas, 16 saídas, 368 Sens-UI; 0 leituras substituídas, 0 notas "
                 "mantidas; apagamento de 200 registos confirmado, restam 0"_s);
        QVERIFY(menus);
        QVERIFY(log2251::tabela(u"Temperaturas"_s).size() > 100);
        QCOMPARE(u->registo().quantos(), 0);

        const QModelIndex marca = j.grelha()->model()->index(0, 0); // a click on the mark takes it away
        utilizador::clicarEm(j.grelha()->viewport(), j.grelha()->visualRect(marca).center());
        QVERIFY(!j.podeDescarregar());
    }

    void importarDoMenu() {
        auto u = conhecida();
        Janela j;
        j.descarregar();
        const auto daRede = log2251::tudo();
        QDirIterator ficheiros(logBruto::pasta(), QDir::Files, QDirIterator::Subdirectories);
        const QString bruto = ficheiros.next();
        for (const QString &nome : log2251::tabelasDoLog)
            cnBD().executar(u"DELETE FROM "_s + nome);
        u.reset();                                             // a file needs no unit
        m_instalacao->dialogos.responderAbrir({}, u"*.log"_s); // cancelled
        j.menu(1, u"mnuImportarLog"_s);
        QVERIFY(j.form->isEnabled());
        m_instalacao->dialogos.responderAbrir(bruto);
        j.menu(1, u"mnuImportarLog"_s);
        QVERIFY(!j.form->isEnabled());
        j.esperarLivre();
        QVERIFY(log2251::tudo() == daRede);
        m_instalacao->dialogos.responderAbrir({});
        j.menu(1, u"mnuImportarLog"_s);
        QCOMPARE(m_instalacao->dialogos.ultimaPasta, QFileInfo(bruto).path()); // where the last one lay
    }

    void reporDoMenu() {
        const auto u = conhecida();
        Janela j;
        m_instalacao->dialogos.esperarMensagem(u"Nenhum log deste dispositivo substituiu leituras"_s);
        j.menu(1, u"mnuReporLeituras"_s);
        j.descarregar();
        cnBD().executar(u"UPDATE Humidade SET Percentagem = 1, flag = 'nota'"_s);
        const auto antes = log2251::tudo();
        const qsizetype n = antes[u"Humidade"_s].size();
        j.descarregar();
        QVERIFY(j.celula(1, Coluna::DSTAT).contains(u"; %1 leituras substituídas, %1 notas mantidas; "_s.arg(n)));
        QVERIFY(controlo<QLabel>(j.form, u"lblPormenor"_s)->text().contains(u"%1 notas mantidas"_s.arg(n)));
        const auto comLog = log2251::tudo();
        const QString ficheiro = logBruto::ultimasSubstituidas(u"127.0.0.2"_s, u->portaWeb());
        m_instalacao->dialogos.responderAbrir({}, u"*.substituidas"_s); // cancelled
        j.menu(1, u"mnuReporLeituras"_s);
        m_instalacao->dialogos.responderAbrir(ficheiro);
        m_instalacao->dialogos.responderPergunta(false, u"Repor as %1 leituras de 127.0.0.2"_s.arg(n));
        j.menu(1, u"mnuReporLeituras"_s);
        QVERIFY(log2251::tudo() == comLog);
        m_instalacao->dialogos.responderAbrir(ficheiro);
        m_instalacao->dialogos.responderPergunta(true);
        m_instalacao->dialogos.esperarMensagem(u"%1 leituras repostas; 0 já lá estavam;"_s.arg(n));
        j.menu(1, u"mnuReporLeituras"_s);
        QVERIFY(j.form->isEnabled());
        QVERIFY(log2251::tudo() == antes);
        Instalacao::escreverFicheiro(ficheiro, "x");
        m_instalacao->dialogos.responderAbrir(ficheiro);
        m_instalacao->dialogos.esperarMensagem(u"O ficheiro não é de leituras substituídas"_s);
        j.menu(1, u"mnuReporLeituras"_s);
        QVERIFY(j.form->isEnabled());
    }

    void falhaFicaAVermelho() {
        const auto mau = conhecida({Defeito::LogSoma});
        const auto bom = conhecida({}, u"127.0.0.3"_s);
        Janela j;
        const int altura = j.grelha()->height();
        j.descarregar();
        const auto cor = [&] {
            return controlo<QLabel>(j.form, u"lblInfoDesc"_s)->palette().color(QPalette::WindowText);
        };
        QCOMPARE(j.grelha()->height(), altura); // the list does not jump when there is something to say
        j.irPara(1, Coluna::IP);
        QVERIFY(j.info().startsWith(u"Erro ao descarregar o ficheiro BIN: "));
        QVERIFY(cor().red() > 2 * cor().green());
        j.irPara(2, Coluna::IP);
        QCOMPARE(j.info(), u"Dados tranferidos com sucesso"_s);
        QCOMPARE(cor(), j.form->palette().color(QPalette::WindowText));
        QCOMPARE(bom->registo().quantos(), 100); // nobody asked for its erasure
    }

    void semRede() {
        estado().ambiente.redeLigada = [] { return false; };
        const auto u = conhecida();
        m_instalacao->dialogos.esperarMensagem(u"A rede está acessível"_s); // the words that have always stood there
        Janela j;
        QTRY_COMPARE(m_instalacao->dialogos.textos.size(), 1);
        QVERIFY(j.form->isEnabled());
        QVERIFY(j.podeDescarregar());
        m_instalacao->dialogos.esperarMensagem(u"A rede está inacessível"_s);
        utilizador::escrever(j.form, u"txtTexto"_s, u"127.0.0.2"_s);
        j.clicar(u"cmdConectar"_s);
    }

    void editarCelulas() {
        const auto a = conhecida();
        const auto b = conhecida({}, u"127.0.0.3"_s);
        cnBD().executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Modelo) VALUES ('127.0.0.5', 'Outro', 10)"_s);
        Janela j;
        const std::tuple<Coluna, QString, QString> casos[] = {
            // typed, and what then stands in cell and table
            {Coluna::DESCRICAO, u"O'Câmara"_s, u"O'Câmara"_s},
            {Coluna::DESCRICAO, u"ABCDEFGHIJKLMNOPQRS"_s, u"ABCDEFGHIJKLMNO"_s},
            {Coluna::PORTA, u"8a0b8x2"_s, u"8082"_s},
            {Coluna::PORTA, u"70000"_s, u"8082"_s},
            {Coluna::PORTA, {}, u"8082"_s},
            {Coluna::IP, u"servidor"_s, u"127.0.0.2"_s},
            {Coluna::IP, u"127.0.0.3"_s, u"127.0.0.2"_s}, // of another row
            {Coluna::IP, u"127.0.0.5"_s, u"127.0.0.2"_s}, // of a unit that is not listed
            {Coluna::IP, u"127.0.0.20"_s, u"127.0.0.20"_s},
        };
        for (const auto &[coluna, texto, fica] : casos) {
            const QString antes = j.celula(1, coluna);
            j.editar(1, coluna, texto, Qt::Key_Escape);
            QCOMPARE(j.celula(1, coluna), antes);
            j.editar(1, coluna, texto);
            QCOMPARE(j.celula(1, coluna), fica);
            QCOMPARE(log2251::conteudo(u"SELECT PoseidonIP, Porta, Nome FROM Poseidons"_s),
                     QStringList({j.celula(1, Coluna::IP) + u'|' + j.celula(1, Coluna::PORTA) + u'|' +
                                      j.celula(1, Coluna::DESCRICAO),
                                  u"127.0.0.3|%1|Unidade 3"_s.arg(b->portaWeb()), u"127.0.0.5|~|Outro"_s}));
        }
    }

    // Red is the one cell that was edited, until its old value, the unit's own or a search is back.
    void celulaAlteradaAVermelho() {
        const auto u = ligarUnidade();
        const QString porta = QString::number(u->portaWeb());
        definir(u"Pesquisa"_s, u"127.0.0.2:"_s + QString::number(u->portaPesquisa()));
        cnBD().executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Modelo, Mac, Porta, m) VALUES "
                        "('127.0.0.44', 'Velho', 4, ?, 81, 'AUT')"_s,
                        {u->definicao().mac});
        Janela j; // the name came with the first search, address and port stand as they were
        const auto vermelhas = [&] {
            QStringList nomes;
            for (int c = 0; c < j.grelha()->model()->columnCount(); ++c)
                if (j.grelha()->model()->index(0, c).data(Qt::ForegroundRole).value<QColor>().red() == 255)
                    nomes += j.grelha()->model()->headerData(c, Qt::Horizontal).toString();
            return nomes.join(u' ');
        };
        const std::tuple<Coluna, QString, QString, bool> casos[] = {
            // typed, the red cells then, refused
            {Coluna::DESCRICAO, u"Outra"_s, u"Nome"_s, false},
            {Coluna::IP, u"127.0.0.55"_s, u"IP Nome"_s, false},
            {Coluna::IP, u"servidor"_s, u"IP Nome"_s, true},
            {Coluna::DESCRICAO, u"Unidade 2"_s, u"IP"_s, false},
            {Coluna::PORTA, u"99999"_s, u"IP"_s, true},
            {Coluna::PORTA, porta, u"IP"_s, false},  // the unit's own
            {Coluna::IP, u"127.0.0.2"_s, {}, false}, // the unit's own
            {Coluna::IP, u"127.0.0.56"_s, u"IP"_s, false},
            {Coluna::IP, u"127.0.0.44"_s, {}, false}, // the old value
            {Coluna::PORTA, u"82"_s, u"Porta"_s, false},
        };
        QCOMPARE(vermelhas(), QString());
        for (const auto &[coluna, texto, esperadas, recusado] : casos) {
            j.editar(1, coluna, texto);
            QCOMPARE(vermelhas(), esperadas);
            QVERIFY2(j.info().isEmpty() != recusado, qPrintable(texto)); // of this edit, never of one before
        }
        j.clicar(u"cmdPesquisar"_s);
        j.esperarLivre();
        QCOMPARE(vermelhas(), QString());
    }

    void adicionarRemoto() {
        const auto u = ligarUnidade({Defeito::XmlSemElementos});
        const QString porta = QString::number(u->portaWeb());
        Janela j;
        const auto conectar = [&](const QString &endereco, bool entra) {
            utilizador::escrever(j.form, u"txtTexto"_s, endereco);
            j.clicar(u"cmdConectar"_s);
            QVERIFY(!j.form->isEnabled());
            QVERIFY(j.visivel(u"imgConnect"_s));
            QCOMPARE(controlo<QLabel>(j.form, u"imgConnect"_s)->property("Tag").toString() == u"1", entra);
            j.esperarLivre();
            QVERIFY(!j.visivel(u"imgConnect"_s));
            QCOMPARE(j.grelha()->model()->rowCount(), entra ? 1 : 0);
            QCOMPARE(j.texto(u"txtTexto"_s), entra ? QString() : endereco);
            QCOMPARE(j.info().isEmpty(), entra);
        };
        conectar(u"127.0.0.99:"_s + porta, false);
        conectar(u"127.0.0.2:"_s + porta, false); // not what a unit sends
        u->definirDefeitos({});
        conectar(u"http://127.0.0.2:%1/"_s.arg(porta), true); // as a browser shows it
        QCOMPARE(j.celula(1, Coluna::UDP), u"R"_s);
        QCOMPARE(j.celula(1, Coluna::IP), u"127.0.0.2:"_s + porta);
        tecla(j.grelha(), Qt::Key_Space); // the mark of a new row is no tick
        j.descarregar();
        QVERIFY(j.celula(1, Coluna::DSTAT).startsWith(u"Dados tranferidos com sucesso: "));
    }

    void pesquisaSemFim() {
        definir(u"PesquisaDuracao"_s, u"1500"_s);
        registarPoseidon(registoForms());
        const QPointer<QWidget> form = registoForms().abrir(u"frmDescarregar2251"_s);
        utilizador::mostrar(form);
        QTRY_VERIFY(!form->isEnabled());
        auto *luz = controlo<QLabel>(form, u"imgPesquisa"_s);
        QTRY_VERIFY(luz->isVisible());
        const QString cor = luz->property("Tag").toString();
        QTRY_VERIFY(luz->property("Tag").toString() != cor);
        QTRY_VERIFY(form->isEnabled());
        QVERIFY(!luz->isVisible());
        utilizador::clicar(form, u"cmdPesquisar"_s);
        QVERIFY(!form->isEnabled());
        delete form.data(); // in the middle of a search
    }

    void menuDaLinha() {
        const auto u = conhecida();
        definir(u"PortaConsola"_s, u"8099"_s);
        Janela j;
        QDesktopServices::setUrlHandler(u"http"_s, this, "abrirEndereco");
        j.menu(1, u"mnuInternetExplorer"_s);
        QDesktopServices::unsetUrlHandler(u"http"_s);
        QCOMPARE(m_aberto, u"http://127.0.0.2:%1"_s.arg(u->portaWeb()));
        j.menu(1, u"mnuTelnet"_s);
        const QPointer<QWidget> form = utilizador::form(u"frmTelnet"_s);
        QVERIFY(form);
        QCOMPARE(controlo<QLineEdit>(form, u"txtEndereco"_s)->text(), u"127.0.0.2"_s);
        QCOMPARE(controlo<QLineEdit>(form, u"txtPorta"_s)->text(), u"8099"_s);
        form->close();
        QTRY_VERIFY(form.isNull());
    }

    void acertarRelogio() {
        const auto u = conhecida();
        u->registo().acertar(estado().ambiente.agora().addSecs(-7200));
        definir(u"PortaConsola"_s, QString::number(u->portaConsola()));
        Janela j;
        j.form->definirTempos({20, 1500, 50});
        m_instalacao->dialogos.responderPergunta(
            false, u"serão eliminadas.\nDispositivo: Unidade 2 (127.0.0.2:%1)\nDeseja continuar?"_s.arg(u->portaWeb()));
        j.clicar(u"cmdActualizar"_s);
        QCOMPARE(u->registo().quantos(), 100);
        m_instalacao->dialogos.responderPergunta(true, u"ATENÇÃO,\nSe actualizar"_s);
        m_instalacao->dialogos.esperarMensagem(u"Data\\hora actualizada: 15/03/2024 10:20:30"_s);
        j.clicar(u"cmdActualizar"_s);
        j.esperarLivre();
        QCOMPARE(m_instalacao->dialogos.estilos.last(), Dialogos::Estilo::Informacao);
        QCOMPARE(u->registo().quantos(), 0);
        QVERIFY(!j.visivel(u"ProgressBar"_s));
        u->definirDefeitos({Defeito::ConsolaMuda});
        m_instalacao->dialogos.responderPergunta(true);
        m_instalacao->dialogos.esperarMensagem(u"Erro ao actualizar a data\\hora: 5"_s);
        j.clicar(u"cmdActualizar"_s);
        j.esperarLivre();
        QCOMPARE(m_instalacao->dialogos.estilos.last(), Dialogos::Estilo::Critico);
    }

    void opcoesELugar() {
        const auto u = conhecida({Defeito::LogPara});
        {
            Janela j;
            j.form->move(120, 90);
            QCOMPARE(j.texto(u"txtNMedias"_s), u"3"_s);
            utilizador::escrever(j.form, u"txtNMedias"_s, {});
            j.grelha()->setFocus();
            QCOMPARE(j.celula(1, Coluna::NLEITURAS), u"1"_s);
            utilizador::escrever(j.form, u"txtNMedias"_s, u"1x2"_s);
            j.grelha()->setFocus();
            QCOMPARE(j.celula(1, Coluna::NLEITURAS), u"12"_s);
            j.clicar(u"chkClearMemory"_s);
            QCOMPARE(log2251::conteudo(u"SELECT NLeiturasM, ApagarLog FROM Poseidons"_s), QStringList(u"12|1"_s));
            j.clicar(u"cmdDescarregar"_s);
            deixarPassar(150);
            j.form->close();
            QTRY_VERIFY(j.form.isNull());
            deixarPassar(600); // what would have come does no harm
            QCOMPARE(u->registo().quantos(), 100);
        }
        const auto lido = [](const QString &seccao, const QString &chave) {
            return modINI::GetSetting(u"Vistrel"_s, seccao, chave);
        };
        QCOMPARE(lido(u"D2251"_s, u"Navg"_s), u"12"_s);
        QCOMPARE(lido(u"D2251"_s, u"Clear"_s), u"1"_s);
        QCOMPARE(lido(u"FORMS"_s, u"frmDescarregar2251TOP"_s), QString::number(90 * 15));
        Janela j;
        QCOMPARE(j.form->pos(), QPoint(120, 90));
        QVERIFY(controlo<QCheckBox>(j.form, u"chkClearMemory"_s)->isChecked()); // of the row
    }

public Q_SLOTS:
    void abrirEndereco(const QUrl &url) { m_aberto = url.toString(); }

private:
    QString m_aberto;
    std::unique_ptr<log2251::BaseRapida> m_instalacao;
};

QTEST_MAIN(tst_descarregar)
#include "tst_descarregar.moc"
