#include "logger/forms/registarAjuda.h"
#include "platform/forms/registoForms.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

namespace {

const QStringList chaves = {u"PortType"_s, u"PortNum"_s, u"Dispositivo"_s, u"1WireDeviceID"_s};

// The form, and a reader at one port.
struct Mesa {
    Instalacao instalacao{Instalacao::Base::Vazia};
    BotaoDeTeste leitor;
    QList<std::pair<int, int>> tentados; // type, number
    int numero = 3;                      // of type 5: where the reader is
    std::function<void()> aoTentar;
    QPointer<QWidget> form;

    Mesa() {
        leitor.aoAbrir = [this](qint16 n, qint16 t) {
            tentados.append({t, n});
            if (aoTentar)
                aoTentar();
            leitor.semAdaptador = t != 5 || n != numero;
        };
        registarAjuda(registoForms());
        guardar(u"7"_s);
    }
    ~Mesa() { delete form; }
    Mesa(const Mesa &) = delete;
    Mesa &operator=(const Mesa &) = delete;

    static void guardar(const QString &valor) {
        for (const QString &chave : chaves)
            modINI::SaveSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, chave, valor);
    }
    static QStringList guardados() {
        QStringList valores;
        for (const QString &chave : chaves)
            valores.append(modINI::GetSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, chave, u"?"_s));
        return valores;
    }
    void abrir() {
        delete form;
        form = registoForms().abrir(u"frmAjuda"_s);
        utilizador::mostrar(form);
    }
    void pesquisar() const { utilizador::clicar(form, u"cmd1WirePesquisarAuto"_s); }
    // Type, number and adapter.
    QStringList caixas() const {
        QStringList textos;
        for (const QString &nome : {u"txtTipoPorta"_s, u"txtNPorta"_s, u"txtAdaptador"_s})
            textos.append(utilizador::controlo<QLineEdit>(form, nome)->text());
        return textos;
    }
};

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
        m.leitor.fazer(roms);
        m.abrir();
        m.pesquisar();
        m.pesquisar(); // the list is made anew
        QCOMPARE(m.caixas(), (QStringList{u"5"_s, u"3"_s, nome}));
        auto *lista = utilizador::controlo<QListWidget>(m.form, u"RegList1Wire"_s);
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
        QCOMPARE(Mesa::guardados(), (QStringList{u"5"_s, u"3"_s, nome, id}));
        QCOMPARE(utilizador::controlo<QComboBox>(m.form, u"cboDispositivos"_s)->currentText(), id);
        QCOMPARE(onewire::barramento().sessao, 0);
        m.abrir(); // what was kept is seen again
        QCOMPARE(m.caixas().last(), nome);
    }

    void semAdaptador() {
        Mesa m;
        m.numero = 99;
        m.abrir();
        auto *barra = m.form->findChild<QProgressBar *>(u"ProgressBar1Wire"_s);
        auto *botao = m.form->findChild<QPushButton *>(u"cmd1WirePesquisarAuto"_s);
        QWidget principal; // closed to the user as well
        registoForms().dono = &principal;
        m.aoTentar = [&] {
            QVERIFY(barra->isVisible() && barra->value() == 0 && !botao->isVisible() && !m.form->isEnabled());
            QVERIFY(!principal.isEnabled());
        };
        m.instalacao.dialogos.esperarMensagem(u"Ligue-o ao computador"_s);
        m.pesquisar();
        m.instalacao.verificar();
        QCOMPARE(m.tentados.size(), 75);
        for (const auto &[tipo, numero] : m.tentados)
            QVERIFY(tipo != 2 && tipo >= 1 && tipo <= 6 && numero >= 1 && numero <= 15);
        QCOMPARE(m.caixas(), QStringList(3, u"0"_s));
        QCOMPARE(Mesa::guardados(), QStringList(4, QString()));
        QVERIFY(principal.isEnabled() && m.form->isEnabled() && botao->isVisible() && !barra->isVisible());
    }

    // The adapter goes away while its net is read.
    void adaptadorTirado() {
        Mesa m;
        m.leitor.fazer({simulador::fazerRom(0x81, 1, 0), BotaoDeTeste::rom(simulador::Variante::G)});
        for (int n = 1; n < 12; ++n) {
            m.leitor.defeitos().adaptadorFora = n;
            m.abrir();
            m.instalacao.dialogos.tolerante = true;
            m.pesquisar();
            QVERIFY(m.form->isEnabled());
            QCOMPARE(onewire::barramento().sessao, 0);
        }
    }

    void falhaDaBiblioteca() {
        Mesa m;
        m.aoTentar = [] { throw std::runtime_error("no library"); };
        m.abrir();
        m.instalacao.erros.esperar(u"frmajuda.Pesquisar1WireAuto"_s);
        m.instalacao.dialogos.esperarMensagem(u"Erro ao Carregar DLL do 1-Wire"_s);
        m.pesquisar();
        m.instalacao.verificar();
        QCOMPARE(m.caixas(), QStringList(3, QString()));
        QCOMPARE(Mesa::guardados(), QStringList(4, u"7"_s)); // nothing was learnt, nothing is forgotten
        QVERIFY(m.form->isEnabled());
    }

    // Closed in the middle of a search: nothing is saved, nothing is reported.
    void fechadoAMeio() {
        Mesa m;
        m.numero = 99;
        m.abrir();
        m.aoTentar = [&] {
            if (m.tentados.size() == 20)
                QTimer::singleShot(0, m.form, [&] { delete m.form; });
        };
        // Not by a click, which would go on with the button that is gone.
        QMetaObject::invokeMethod(m.form->findChild<QPushButton *>(u"cmd1WirePesquisarAuto"_s), "click",
                                  Qt::QueuedConnection);
        QTRY_VERIFY(!m.form);
        QVERIFY(m.tentados.size() < 75);
        QCOMPARE(Mesa::guardados(), QStringList(4, u"7"_s));
    }
};

QTEST_MAIN(TstAjuda)
#include "tst_ajuda.moc"
