#include "tests/apoio/widgets.h"

#include "core/literais.h"

#include <QTest>

namespace {

QWidget *utilizavel(const QWidget *form, const QString &nome) {
    auto *w = utilizador::controlo<QWidget>(form, nome);
    if (!w->isVisible() || !w->isEnabled())
        utilizador::desistir(nome + (w->isVisible() ? u" is disabled"_s : u" is hidden"_s));
    return w;
}

} // namespace

namespace utilizador {

void desistir(const QString &motivo) {
    qFatal("%s", qUtf8Printable(motivo));
}

QObject *procurar(const QWidget *form, const QString &nome) {
    if (form) {
        if (form->objectName() == nome)
            return const_cast<QWidget *>(form);
        if (auto *achado = form->findChild<QObject *>(nome))
            return achado;
        desistir(nome + u" is not in "_s + form->objectName());
    }
    const auto janelas = QApplication::topLevelWidgets();
    for (QWidget *janela : janelas)
        if (auto *achado = janela->objectName() == nome ? janela : janela->findChild<QObject *>(nome))
            return achado;
    desistir(nome + u" is in no window"_s);
}

void clicar(const QWidget *form, const QString &nome, Qt::MouseButton botao) {
    QWidget *w = utilizavel(form, nome);
    if (auto *b = qobject_cast<QAbstractButton *>(w); b && botao == Qt::LeftButton) {
        // The middle of a wide check box is not its hit area.
        b->setFocus();
        QTest::mouseClick(b, botao, {}, QPoint(qMin(b->width() / 2, b->height() / 2), b->height() / 2));
    } else {
        QTest::mouseClick(w, botao);
    }
}

void clicarEm(QWidget *controlo, const QPoint &ponto, Qt::MouseButton botao) {
    if (!controlo->isVisible() || !controlo->isEnabled())
        desistir(controlo->objectName() + u" cannot be clicked"_s);
    QTest::mouseMove(controlo, ponto);
    QTest::mouseClick(controlo, botao, {}, ponto);
}

void escrever(const QWidget *form, const QString &nome, const QString &texto) {
    QWidget *w = utilizavel(form, nome);
    w->setFocus();
    QTest::keyClick(w, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(w, Qt::Key_Delete);
    // Typed one character at a time, also what the test library's keyboard has no key for.
    for (const QChar c : texto) {
        QKeyEvent premir(QEvent::KeyPress, 0, Qt::NoModifier, c);
        QApplication::sendEvent(w, &premir);
        QKeyEvent largar(QEvent::KeyRelease, 0, Qt::NoModifier, c);
        QApplication::sendEvent(w, &largar);
    }
}

void tecla(QWidget *janela, int codigo, Qt::KeyboardModifiers modos) {
    QTest::keyClick(janela, static_cast<Qt::Key>(codigo), modos);
}

void escolher(const QWidget *form, const QString &nomeDaCaixa, const QString &entrada) {
    auto *caixa = qobject_cast<QComboBox *>(utilizavel(form, nomeDaCaixa));
    const int i = caixa ? caixa->findText(entrada) : -1;
    if (i < 0)
        desistir(u"no entry \"%1\" in %2"_s.arg(entrada, nomeDaCaixa));
    caixa->setFocus();
    caixa->setCurrentIndex(i);
    Q_EMIT caixa->textActivated(entrada);
    Q_EMIT caixa->activated(i);
}

void accao(const QWidget *janela, const QString &chave) {
    auto *a = controlo<QAction>(janela, chave);
    if (!a->isVisible() || !a->isEnabled())
        desistir(chave + u" is not offered"_s);
    a->trigger();
}

QWidget *form(const QString &nome) {
    const auto todos = QApplication::allWidgets();
    for (QWidget *w : todos)
        if (w->objectName() == nome)
            return w;
    return nullptr;
}

bool esperar(const std::function<bool()> &condicao, int ms) {
    return QTest::qWaitFor(condicao, ms);
}

void mostrar(QWidget *form) {
    form->show();
    if (!QTest::qWaitForWindowExposed(form->window()))
        desistir(form->objectName() + u" was never shown"_s);
}

} // namespace utilizador
