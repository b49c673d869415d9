#include "core/modErros.h"
#include "core/perfil.h"
#include "devicestate/condicoes.h"
#include "devicestate/entradas.h"
#include "devicestate/familiaSensUI.h"
#include "logger/views/familiaLoggers.h"
#include "platform/forms/mnemonicas.h"
#include "platform/forms/registoForms.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/textosDasFontes.h"
#include "tests/apoio/widgets.h"
#include "views/familiaGraficos.h"
#include "views/forms/formOpccoesPontos.h"

#include <typeinfo>

// The language files hold every text that the program uses, and nothing else. What it uses is read off the sources
// (texts that stand beside their key) and seen while every form is opened (captions, and the sections of families).

namespace {

using namespace textosDasFontes;

const QString pastaFontes = QStringLiteral(VISTREL_FONTES);
const QStringList codigos = {u"PT"_s, u"EN"_s, u"CZ"_s};

QString lerTexto(const QString &caminho) {
    return QString::fromUtf8(Instalacao::lerFicheiro(caminho));
}

// What was seen while every form was opened: the texts asked for, and which classes each form is made of.
struct Visto {
    Textos pedidos;
    QHash<QString, QSet<QString>> formsDaClasse; // class in small letters -> forms
};

void notarClasses(const QObject *objecto, const QString &form, Visto &visto) {
    static const QRegularExpression numero(u"^\\d+"_s);
    for (const QMetaObject *m = objecto->metaObject(); m; m = m->superClass())
        visto.formsDaClasse[QString::fromUtf8(m->className()).toLower()].insert(form);
    // A class without signals of its own only shows here.
    visto.formsDaClasse[QString::fromUtf8(typeid(*objecto).name()).remove(numero).toLower()].insert(form);
    for (const QObject *filho : objecto->children())
        notarClasses(filho, form, visto);
}

// The point form of every chart that has one.
void abrirPontos(Visto &visto) {
    QList<MembroGrafico> graficos;
    for (const auto &familia : {familiaGraficos(), familiaSensUI::graficos(), familiaLoggers::graficos()})
        graficos.append(QList<MembroGrafico>(familia.begin(), familia.end()));
    for (const entradas::Especie &e : entradas::especies())
        graficos.append(e.grafico);
    for (const condicoes::Especie &e : condicoes::especies())
        graficos.append(e.grafico);
    for (const MembroGrafico &m : std::as_const(graficos))
        if (m.pontos) {
            const FormOpccoesPontos form(*m.pontos, PontoActual(), nullptr, nullptr);
            notarClasses(&form, m.pontos->form.toString(), visto);
        }
}

Visto abrirTudo() {
    Visto visto;
    Instalacao instalacao;
    instalacao.sensores(
        {{u"A"_s, u"a"_s, u"P 1250C"_s}, {u"B"_s, u"b"_s, u"P 1250R"_s}, {u"C"_s, u"c"_s, u"P 1250K"_s}});
    ApresentadorQt apresentador;
    instalacao.dialogos.tolerante = true; // nothing a form asks while it opens may stop it
    estado().ambiente.apresentador = &apresentador;
    estado().ambiente.textoPedido = [&](const QString &seccao, const QString &chave, const QString &omissao) {
        visto.pedidos[{seccao, chave}] = omissao;
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
        deixarPassar(30);
        if (!form)
            continue;
        notarClasses(form, nome, visto);
        (form->isWindow() ? form.data() : form->parentWidget())->close();
    }
    abrirPontos(visto);
    modErros::TratarErro(u"teste"_s, u"teste"_s, u"1"_s);
    deixarPassar(30);
    estado().ambiente.textoPedido = nullptr;
    return visto;
}

// Everything that the program asks for: what was seen, and what stands in the sources for rarer moments.
Textos textosUsados() {
    const Visto visto = abrirTudo();
    Textos usados = visto.pedidos;
    QDirIterator it(pastaFontes, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo ficheiro(it.next());
        const QString codigo = lerTexto(ficheiro.filePath());
        juntarDirectos(codigo, usados);
        const Fonte fonte = analisar(codigo);
        const QString classe = ficheiro.baseName().section(u'_', 0, 0);
        QStringList seccoes;
        if (!fonte.seccao.isEmpty())
            seccoes.append(fonte.seccao);
        else if (classe.startsWith(u"frm"))
            seccoes.append(u"VISTREL_"_s + classe);
        else
            for (const QString &form : visto.formsDaClasse.value(classe.toLower()))
                seccoes.append(u"VISTREL_"_s + form);
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
        QVERIFY2(m_usados.size() > 1000, qPrintable(QString::number(m_usados.size()))); // the sources were understood
        QDirIterator it(pastaFontes, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            m_fontes += lerTexto(it.next());
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
        const Tabela<QString> caso("codigo");
        for (const QString &codigo : codigos)
            caso(qPrintable(codigo), codigo);
    }
    // Missing and empty keys; placeholders and outer blanks as in the program's own text.
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
        QVERIFY2(faltas.isEmpty(), qPrintable(faltas.mid(0, 40).join(u'\n')));
    }

    // The same keys in all files, none that no source knows; what the reports ask for is not seen here.
    void semChavesAMais() {
        static const QRegularExpression propriedade(u"\\.(Caption|Text|ToolTip|ToolTipText|Exemplo)$"_s);
        const Perfil portugues(Instalacao::lerFicheiro(caminhoDe(u"PT"_s)));
        QStringList aMais;
        for (const QString &seccao : portugues.seccoes())
            for (const QString &chave : portugues.chaves(seccao)) {
                const QString nome = QString(chave).remove(propriedade);
                // Keys of the quantities' entries and views are put together.
                if (!m_usados.contains({seccao, chave}) && !m_fontes.contains(u'"' + chave + u'"') &&
                    !m_fontes.contains(u'"' + nome + u'"'))
                    aMais.append(seccao + u'/' + chave);
            }
        for (const QString &codigo : codigos) {
            const Perfil outro(Instalacao::lerFicheiro(caminhoDe(codigo)));
            QCOMPARE(outro.seccoes(), portugues.seccoes());
            for (const QString &seccao : portugues.seccoes()) {
                QCOMPARE(outro.chaves(seccao), portugues.chaves(seccao));
                for (const QString &chave : portugues.chaves(seccao))
                    if (marcas(*outro.valor(seccao, chave)) != marcas(*portugues.valor(seccao, chave)))
                        aMais.append(codigo + u": placeholders of "_s + chave);
            }
        }
        QVERIFY2(aMais.isEmpty(), qPrintable(aMais.join(u'\n')));
    }

    void menuPeloTeclado_data() { completa_data(); }
    // Every entry has a letter of its own in its menu; Alt, F10 and Alt with a letter open the bar.
    void menuPeloTeclado() {
        QFETCH(const QString, codigo);
        Instalacao inst;
        QVERIFY(QFile::copy(caminhoDe(codigo), inst.pastaINI() + u"/Kelvark-%1.ini"_s.arg(codigo)));
        estado().Lingua = codigo;
        modMain::registarForms(registoForms());
        frmMain shell;
        QHash<QString, QStringList> letras; // by parent
        for (const EntradaMenu &entrada : menuPrincipal()) {
            const QString legenda = utilizador::controlo<QAction>(&shell, entrada.chave.toString())->text();
            const QChar letra = mnemonicas::letraDe(legenda);
            QVERIFY2(!letra.isNull() && letra.unicode() < 0x80, qPrintable(legenda));
            letras[entrada.pai.toString()] += letra;
        }
        for (QStringList &lista : letras)
            QCOMPARE(lista.removeDuplicates(), 0);

        utilizador::mostrar(&shell);
        QMenuBar *barra = shell.menuBar();
        const auto aberto = [&] { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); };
        const auto fechar = [&] {
            while (aberto())
                aberto()->close();
            barra->setActiveAction(nullptr);
        };
        QTest::keyPress(&shell, Qt::Key_Alt, Qt::AltModifier);
        QTest::keyRelease(&shell, Qt::Key_Alt);
        QCOMPARE(barra->activeAction(), barra->actions().constFirst());
        fechar();
        QTest::keyClick(&shell, Qt::Key_F10);
        QCOMPARE(aberto(), barra->actions().constFirst()->menu());
        fechar();
        const QAction *geral = utilizador::controlo<QAction>(&shell, u"Geral"_s);
        QTest::keyClick(&shell, mnemonicas::letraDe(geral->text()).toLatin1(), Qt::AltModifier);
        QCOMPARE(aberto(), geral->menu());
        fechar();
    }

    // The Portuguese file says what the program says without any file.
    void portugues() {
        const Perfil perfil(Instalacao::lerFicheiro(caminhoDe(u"PT"_s)));
        for (auto t = m_usados.begin(); t != m_usados.end(); ++t)
            QCOMPARE(perfil.valor(t.key().first, t.key().second).value_or(QString()), t.value());
    }

private:
    QString m_fontes;
    Textos m_usados;
};

QTEST_MAIN(tst_linguas)
#include "tst_linguas.moc"
