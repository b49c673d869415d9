#pragma once

#include <QPointer>
#include <QSize>
#include <QString>
#include <QWidget>

// Window places in section FORMS of the settings, in twips (15 to a pixel at the design resolution).
namespace lugar {

constexpr int twipsPorPixel = 15;
inline int pixeis(int twips) {
    return twips / twipsPorPixel;
}

struct Regra {
    QString nome;     // prefix of the keys, normally the form's name
    QString ficheiro; // settings file; empty: the program's own
    int largura = 0;  // default WIDTH in twips; 0: the width is not read back
    int altura = 0;   // default HEIGHT in twips; 0: size is not remembered at all
};

// Applies the stored place to the window that shows the form (its sub-window when it is hosted in the work area).
void repor(QWidget *form, const Regra &regra);
// Writes TOP, LEFT and, when the rule knows a height, WIDTH and HEIGHT, in this order.
void guardar(QWidget *form, const Regra &regra);

// The window that carries a form: its sub-window or itself.
QWidget *janelaDe(QWidget *form);

// A window that comes up beside a maximised one is maximised, too: while this lives it is not, so that its own place
// can be set. It is shown anew by that.
class SemMaximizar {
public:
    explicit SemMaximizar(QWidget *janela);
    ~SemMaximizar();
    Q_DISABLE_COPY_MOVE(SemMaximizar)

private:
    QPointer<QWidget> m_janela;
};

} // namespace lugar
