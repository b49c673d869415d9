#include "core/estado.h"
#include "core/modErros.h"
#include "core/perfil.h"
#include "platform/forms/registoForms.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/textosDasFontes.h"
#include "tests/apoio/widgets.h"
#include "views/familiaGraficos.h"
#include "views/forms/formOpccoesPontos.h"

#include <QApplication>
#include <QDirIterator>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

// The language files hold every text that the program uses, and nothing else. What it uses is read off the sources
// (texts that stand beside their key) and seen while every form is opened (captions, and the sections of families).

namespace {

using namespace textosDasFontes;

const QString pastaFontes = QStringLiteral(VISTREL_FONTES);
const QStringList codigos = {u"PT"_s, u"EN"_s, u"CZ"_s};

QString lerTexto(const QString &caminho) {
    return QString::fromUtf8(Instalacao::lerFicheiro(caminho));
}

// Says yes to everything; nothing a form asks while it opens may stop it.
class TudoBem : public Dialogos {
public:
    void mensagem(const QString &, Estilo) override {}
    bool pergunta(const QString &) override { return false; }
    QString abrirFicheiro(const QString &, const QString &) override { return {}; }
    QString gravarFicheiro(const QString &, const QString &, const QString &) override { return {}; }
    QString escolherPasta(const QString &) override { return {}; }
};

// Opens every form once, in a small installation, and notes what it asks for.
Textos abrirTudo() {
    Textos pedidos;
    Instalacao instalacao;
    instalacao.sensores(
        {{u"A"_s, u"a"_s, u"P 1250C"_s}, {u"B"_s, u"b"_s, u"P 1250R"_s}, {u"C"_s, u"c"_s, u"P 1250K"_s}});
    TudoBem dialogos;
    ApresentadorQt apresentador;
    estado().ambiente.dialogos = &dialogos;
    estado().ambiente.apresentador = &apresentador;
    estado().ambiente.textoPedido = [&](const QString &seccao, const QString &chave, const QString &omissao) {
        pedidos[{seccao, chave}] = omissao;
    };
    modMain::registarForms(registoForms());
    frmMain principal;
    utilizador::mostrar(&principal);
    QTimer fecho; // modal forms wait for somebody
    QObject::connect(&fecho, &QTimer::timeout, qApp, [] {
        if (QWidget *modal = QApplication::activeModalWidget())
            modal->close();
    });
    fecho.start(20);
    for (const QString &nome : registoForms().nomes()) {
        const QPointer<QWidget> form = registoForms().abrir(nome);
        QTest::qWait(30);
        if (form)
            (form->isWindow() ? form.data() : form->parentWidget())->close();
    }
    for (const MembroGrafico &m : familiaGraficos())
        const FormOpccoesPontos form(*m.pontos, PontoActual(), nullptr, nullptr);
    modErros::TratarErro(u"teste"_s, u"teste"_s, u"1"_s);
    QTest::qWait(30);
    estado().ambiente.textoPedido = nullptr;
    return pedidos;
}

// Everything that the program asks for. A key of a family's source counts for the sections in which a key of that
// source alone was asked for.
Textos textosUsados() {
    Textos usados = abrirTudo();
    QMap<QString, Fonte> fontes;
    QHash<QString, int> vezes;
    QDirIterator it(pastaFontes, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString nome = it.next();
        const QString codigo = lerTexto(nome);
        juntarDirectos(codigo, usados);
        const Fonte &fonte = *fontes.insert(nome, analisar(codigo));
        QSet<QString> chaves;
        for (const Texto &t : fonte.textos)
            chaves.insert(t.chave);
        for (const QString &c : std::as_const(chaves))
            ++vezes[c];
    }
    const Textos pedidos = usados;
    for (const Fonte &fonte : std::as_const(fontes)) {
        QSet<QString> seccoes;
        if (!fonte.seccaoCalculada && QSet<QString>(fonte.seccoes.begin(), fonte.seccoes.end()).size() == 1)
            seccoes.insert(fonte.seccoes.constFirst());
        for (const Texto &t : fonte.textos)
            if (fonte.seccaoCalculada && vezes[t.chave] == 1)
                for (auto p = pedidos.begin(); p != pedidos.end(); ++p)
                    if (p.key().second == t.chave)
                        seccoes.insert(p.key().first);
        for (const Texto &t : fonte.textos)
            for (const QString &s : std::as_const(seccoes))
                if (!usados.contains({s, t.chave}))
                    usados[{s, t.chave}] = t.omissao;
    }
    return usados;
}

QString caminhoDe(const QString &codigo) {
    return pastaFontes + u"/../languages/Kelvark-%1.ini"_s.arg(codigo);
}

QStringList marcas(const QString &texto) {
    static const QRegularExpression marca(u"%\\d"_s);
    QStringList lista;
    for (auto m = marca.globalMatch(texto); m.hasNext();)
        lista.append(m.next().captured());
    lista.sort();
    return lista;
}

QString bordos(const QString &texto) {
    const qsizetype inicio =
        std::find_if(texto.begin(), texto.end(), [](QChar c) { return !c.isSpace(); }) - texto.begin();
    const qsizetype fim = QStringView(texto).trimmed().size() + inicio;
    return texto.left(inicio) + u'|' + texto.mid(fim);
}

} // namespace

class tst_linguas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        m_usados = textosUsados();
        if (const QString ficheiro = qEnvironmentVariable("VISTREL_TEXTOS"); !ficheiro.isEmpty()) {
            QByteArray lista; // for who makes the files: section, key, Portuguese text
            for (auto t = m_usados.begin(); t != m_usados.end(); ++t)
                lista += (t.key().first + u'\t' + t.key().second + u'\t' + QString(t.value()).replace(u'\n', u"\\n"_s) +
                          u'\n')
                             .toUtf8();
            Instalacao::escreverFicheiro(ficheiro, lista);
        }
    }

    void completa_data() {
        QTest::addColumn<QString>("codigo");
        for (const QString &codigo : codigos)
            QTest::newRow(qPrintable(codigo)) << codigo;
    }
    // Missing, unknown and empty keys; placeholders and outer blanks as in the program's own text.
    void completa() {
        QFETCH(const QString, codigo);
        const Perfil perfil(Instalacao::lerFicheiro(caminhoDe(codigo)));
        QStringList faltas;
        for (auto t = m_usados.begin(); t != m_usados.end(); ++t) {
            const auto &[seccao, chave] = t.key();
            const QString nome = seccao + u'/' + chave;
            const QString texto = perfil.valor(seccao, chave).value_or(QString());
            if (texto.isEmpty() && !t.value().isEmpty())
                faltas.append(u"missing: "_s + nome);
            else if (marcas(texto) != marcas(t.value()))
                faltas.append(u"placeholders: "_s + nome);
            else if (bordos(texto) != bordos(t.value()))
                faltas.append(u"outer blanks: "_s + nome);
            else if (texto.size() >= 512)
                faltas.append(u"too long: "_s + nome);
        }
        QSet<QPair<QString, QString>> conhecidos;
        for (auto t = m_usados.begin(); t != m_usados.end(); ++t)
            conhecidos.insert({t.key().first.toCaseFolded(), t.key().second.toCaseFolded()});
        for (const QString &seccao : perfil.seccoes())
            for (const QString &chave : perfil.chaves(seccao))
                if (!conhecidos.contains({seccao.toCaseFolded(), chave.toCaseFolded()}))
                    faltas.append(u"unknown: "_s + seccao + u'/' + chave);
        QVERIFY2(faltas.isEmpty(), qPrintable(faltas.mid(0, 40).join(u'\n')));
    }

    // The Portuguese file says what the program says without any file.
    void portugues() {
        const Perfil perfil(Instalacao::lerFicheiro(caminhoDe(u"PT"_s)));
        for (auto t = m_usados.begin(); t != m_usados.end(); ++t)
            QCOMPARE(perfil.valor(t.key().first, t.key().second).value_or(QString()), t.value());
    }

private:
    Textos m_usados;
};

QTEST_MAIN(tst_linguas)
#include "tst_linguas.moc"
