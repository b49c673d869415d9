#include "core/perfil.h"
#include "platform/forms/mnemonicas.h"
#include "platform/forms/registoForms.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/textosDoPrograma.h"
#include "tests/apoio/widgets.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTest>

// The language files hold every text that the program uses, and nothing else. What it uses is read off the sources
// (texts that stand beside their key) and seen while every form is opened (captions, and the sections of families).

namespace {

using namespace textosDasFontes;

const QString pastaFontes = QStringLiteral(VISTREL_FONTES);
const QStringList codigos = {u"PT"_s, u"EN"_s, u"CZ"_s};

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
    void initTestCase() { m_usados = textosDoPrograma(pastaFontes); }

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

    // The same keys in all files, and none that the program does not ask for.
    void semChavesAMais() {
        const Perfil portugues(Instalacao::lerFicheiro(caminhoDe(u"PT"_s)));
        QStringList aMais;
        for (const QString &seccao : portugues.seccoes())
            for (const QString &chave : portugues.chaves(seccao))
                if (!m_usados.contains({seccao, chave}))
                    aMais.append(seccao + u'/' + chave);
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
    Textos m_usados;
};

QTEST_MAIN(tst_linguas)
#include "tst_linguas.moc"
