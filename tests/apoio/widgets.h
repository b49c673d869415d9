#pragma once

#include <QtWidgets>

#include <functional>

// What a user does with a form. Controls are found by their names in the form (or anywhere when the form is null);
// a control that is missing, hidden or disabled when it is used ends the test with its name.
namespace utilizador {

QObject *procurar(const QWidget *form, const QString &nome);
template <typename T>
T *controlo(const QWidget *form, const QString &nome);

void clicar(const QWidget *form, const QString &nome, Qt::MouseButton botao = Qt::LeftButton);
void clicarEm(QWidget *controlo, const QPoint &ponto, Qt::MouseButton botao = Qt::LeftButton);
// Replaces the text of an edit field by typing; ends with no key of its own.
void escrever(const QWidget *form, const QString &nome, const QString &texto);
void tecla(QWidget *janela, int codigo, Qt::KeyboardModifiers modos = Qt::NoModifier);
void escolher(const QWidget *form, const QString &nomeDaCaixa, const QString &entrada); // a combo box entry
void accao(const QWidget *janela, const QString &chave);                                // a menu entry by its key

// The loaded form of that name, or null; hosted ones included.
QWidget *form(const QString &nome);
// Lets events run until the condition holds; false after the time, which only ends a test that fails.
bool esperar(const std::function<bool()> &condicao, int ms = 60000);
// Shows and waits until it can be worked with.
void mostrar(QWidget *form);

[[noreturn]] void desistir(const QString &motivo);

template <typename T>
T *controlo(const QWidget *form, const QString &nome) {
    if (auto *achado = qobject_cast<T *>(procurar(form, nome)))
        return achado;
    desistir(nome + QStringLiteral(" is not a ") + QString::fromUtf8(T::staticMetaObject.className()));
}

} // namespace utilizador
