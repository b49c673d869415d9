#include "core/modINI.h"
#include "logger/forms/registarAjuda.h"
#include "logger/modPesquisa1Wire.h"
#include "platform/forms/registoForms.h"
#include "platform/onewire/portos.h"
#include "shell/frmMain.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"
#include "tests/apoio/widgets.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

namespace {

struct Mesa {
    Instalacao instalacao{Instalacao::Base::Vazia};
    BotaoDeTeste leitor;
    QList<QPair<int, int>> tentados; // type, number
    int tipo = 5, numero = 3;        // where the reader is
    std::function<void()> aoTentar;

    Mesa() {
        onewire::barramento().abrir = [this](qint16 n, qint16 t) -> std::unique_ptr<onewire::Transporte> {
            tentados.append({t, n});
            if (aoTentar)
                aoTentar();
            if (t != tipo || n != numero)
                return nullptr;
            return std::make_unique<simulador::TransporteVirtual>(leitor.linha);
        };
    }
    static QString guardado(const QString &chave) {
        return modINI::GetSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, chave, u"?"_s);
    }
    void porNoLeitor(const QList<onewire::Rom> &roms) {
        QStringList nomes;
        for (const auto &rom : roms) {
            nomes.append(simulador::textoDoRom(rom));
            leitor.fazer(nomes.last(), rom);
        }
        leitor.por(nomes);
    }
    QWidget *abrir() {
        registarAjuda(registoForms());
        QWidget *form = registoForms().abrir(u"frmAjuda"_s);
        utilizador::mostrar(form);
        return form;
    }
};

QString caixa(QWidget *form, const QString &nome) {
    return utilizador::controlo<QLineEdit>(form, nome)->text();
}

} // namespace

class TstAjuda : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void encontra_data() {
        const Tabela<int, QString> caso("familia", "nome");
        caso("01", 0x01, u"ECLO"_s);
        caso("09", 0x09, u"DS9097U"_s);
        caso("81", 0x81, u"DS9490R"_s);
        caso("none of these", 0x10, u"NO ID"_s);
        caso("bare net", 0, u"NO ID"_s);
    }
    void encontra() {
        QFETCH(int, familia);
        QFETCH(QString, nome);
        Mesa m;
        QList<onewire::Rom> roms;
        if (familia)
            roms = {simulador::fazerRom(quint8(familia), 0x1F0A21, 0), BotaoDeTeste::rom(simulador::Variante::H, 4),
                    BotaoDeTeste::rom(simulador::Variante::Z, 5)};
        m.porNoLeitor(roms);
        QWidget *form = m.abrir();
        utilizador::clicar(form, u"cmd1WirePesquisarAuto"_s);
        QCOMPARE(caixa(form, u"txtTipoPorta"_s), u"5"_s);
        QCOMPARE(caixa(form, u"txtNPorta"_s), u"3"_s);
        QCOMPARE(caixa(form, u"txtAdaptador"_s), nome);
        auto *lista = utilizador::controlo<QListWidget>(form, u"RegList1Wire"_s);
        QStringList vistos, esperados;
        for (int i = 0; i < lista->count(); ++i)
            vistos.append(lista->item(i)->text());
        for (const auto &rom : roms) { // two digits each, the last element first
            QByteArray bytes(reinterpret_cast<const char *>(rom.data()), 8);
            std::reverse(bytes.begin(), bytes.end());
            esperados.append(QString::fromLatin1(bytes.toHex().toUpper()));
        }
        const QString id = familia && nome != u"NO ID" ? esperados.first() : QString();
        vistos.sort();
        esperados.sort();
        QCOMPARE(vistos, esperados);
        QCOMPARE(lista->isEnabled(), familia != 0);
        QCOMPARE(Mesa::guardado(u"PortType"_s), u"5"_s);
        QCOMPARE(Mesa::guardado(u"PortNum"_s), u"3"_s);
        QCOMPARE(Mesa::guardado(u"Dispositivo"_s), nome);
        QCOMPARE(Mesa::guardado(u"1WireDeviceID"_s), id);
        QCOMPARE(utilizador::controlo<QComboBox>(form, u"cboDispositivos"_s)->currentText(), id);
        QCOMPARE(onewire::barramento().sessao, 0);
        // Once more: the list is made anew.
        utilizador::clicar(form, u"cmd1WirePesquisarAuto"_s);
        QCOMPARE(lista->count(), int(roms.size()));
        delete form;
        // And what was kept is seen again.
        form = m.abrir();
        QCOMPARE(caixa(form, u"txtAdaptador"_s), nome);
        delete form;
    }

    void semAdaptador() {
        Mesa m;
        m.numero = 99;
        for (const QString &chave : {u"PortType"_s, u"PortNum"_s, u"Dispositivo"_s, u"1WireDeviceID"_s})
            modINI::SaveSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, chave, u"7"_s);
        QWidget *form = m.abrir();
        bool barraAVista = false, impedido = false;
        int barra = -1;
        m.aoTentar = [&] {
            auto *b = form->findChild<QProgressBar *>(u"ProgressBar1Wire"_s);
            barraAVista = b->isVisible() && !form->findChild<QPushButton *>(u"cmd1WirePesquisarAuto"_s)->isVisible();
            impedido = !form->isEnabled();
            barra = b->value();
        };
        QElapsedTimer relogio;
        relogio.start();
        utilizador::clicar(form, u"cmd1WirePesquisarAuto"_s);
        QVERIFY(relogio.elapsed() < 20000);
        QVERIFY(barraAVista && impedido);
        QCOMPARE(barra, 0);
        QCOMPARE(m.tentados.size(), 75);
        for (const auto &[tipo, numero] : m.tentados)
            QVERIFY(tipo != 2 && tipo >= 1 && tipo <= 6 && numero >= 1 && numero <= 15);
        for (const QString &nome : {u"txtTipoPorta"_s, u"txtNPorta"_s, u"txtAdaptador"_s})
            QCOMPARE(caixa(form, nome), u"0"_s);
        for (const QString &chave : {u"PortType"_s, u"PortNum"_s, u"Dispositivo"_s, u"1WireDeviceID"_s})
            QCOMPARE(Mesa::guardado(chave), QString());
        QVERIFY(form->isEnabled());
        QVERIFY(utilizador::controlo<QPushButton>(form, u"cmd1WirePesquisarAuto"_s)->isVisible());
        QVERIFY(!utilizador::controlo<QProgressBar>(form, u"ProgressBar1Wire"_s)->isVisible());
        delete form;
    }

    // The real ports of this machine, none of which has an adapter.
    void portosVerdadeirosAcabamDepressa() {
        Mesa m;
        onewire::barramento().abrir = [](qint16 n, qint16 t) -> std::unique_ptr<onewire::Transporte> {
            return t == 5 ? nullptr : onewire::abrirPorto(n, t); // not the serial lines, whatever hangs on them
        };
        modPesquisa1Wire::Resultado r;
        QElapsedTimer relogio;
        relogio.start();
        modPesquisa1Wire::Pesquisar1WireAuto(
            {[](int) {}, [](const QString &) { return false; }, [](const QString &) {}}, r);
        QCOMPARE(r.texto, u"0X0X0"_s);
        QVERIFY(relogio.elapsed() < 20000);
    }

    // The adapter goes away while its net is read.
    void adaptadorTirado() {
        Mesa m;
        m.porNoLeitor({simulador::fazerRom(0x81, 1, 0), BotaoDeTeste::rom(simulador::Variante::G)});
        for (int n = 1; n < 12; ++n) {
            m.leitor.defeitos().adaptadorFora = n;
            QWidget *form = m.abrir();
            utilizador::clicar(form, u"cmd1WirePesquisarAuto"_s);
            QVERIFY(form->isEnabled());
            QCOMPARE(onewire::barramento().sessao, 0);
            delete form;
        }
    }

    void falhaDaBiblioteca() {
        Mesa m;
        m.aoTentar = [] { throw std::runtime_error("no library"); };
        modINI::SaveSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, u"PortNum"_s, u"4"_s);
        QWidget *form = m.abrir();
        m.instalacao.erros.esperar(u"frmajuda.Pesquisar1WireAuto"_s);
        m.instalacao.dialogos.esperarMensagem(u"Erro ao Carregar DLL do 1-Wire"_s);
        utilizador::clicar(form, u"cmd1WirePesquisarAuto"_s);
        m.instalacao.verificar();
        QCOMPARE(caixa(form, u"txtTipoPorta"_s), QString());
        QCOMPARE(Mesa::guardado(u"PortNum"_s), u"4"_s); // nothing was learnt, nothing is forgotten
        QVERIFY(form->isEnabled());
        delete form;
    }

    // From the menu, with the main window closed to the user for the length of the search.
    void pelaJanelaPrincipal() {
        Mesa m;
        m.porNoLeitor({BotaoDeTeste::rom(simulador::Variante::G)});
        m.instalacao.abrirBase();
        registarAjuda(registoForms());
        frmMain principal;
        utilizador::mostrar(&principal);
        utilizador::accao(&principal, u"Ajuda"_s);
        QWidget *form = utilizador::form(u"frmAjuda"_s);
        QVERIFY(form && principal.isAncestorOf(form));
        bool fechada = false;
        m.aoTentar = [&] { fechada = !principal.isEnabled(); };
        utilizador::clicar(form, u"cmd1WirePesquisarAuto"_s);
        QVERIFY(fechada && principal.isEnabled() && form->isEnabled());
        QCOMPARE(caixa(form, u"txtNPorta"_s), u"3"_s);
        const QPointer<QWidget> vivo = form;
        utilizador::clicar(form, u"cmd1Wire"_s);
        QTRY_VERIFY(!vivo);
    }

    // Closed in the middle of a search: nothing is saved, nothing is reported.
    void fechadoAMeio() {
        Mesa m;
        m.numero = 99;
        QPointer<QWidget> form = m.abrir();
        form->setAttribute(Qt::WA_DeleteOnClose);
        modINI::SaveSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, u"PortNum"_s, u"4"_s);
        m.aoTentar = [&] {
            if (m.tentados.size() == 20)
                QTimer::singleShot(0, form, [form] { delete form; });
        };
        // Not by a click, which would go on with the button that is gone.
        QMetaObject::invokeMethod(form->findChild<QPushButton *>(u"cmd1WirePesquisarAuto"_s), "click",
                                  Qt::QueuedConnection);
        QTRY_VERIFY(!form);
        QVERIFY(m.tentados.size() < 75);
        QCOMPARE(Mesa::guardado(u"PortNum"_s), u"4"_s);
    }
};

QTEST_MAIN(TstAjuda)
#include "tst_ajuda.moc"
