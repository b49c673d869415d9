#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QValidator>

class QComboBox;
class QDateEdit;
class QGridLayout;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QTimeEdit;

// The small parts that the button's form is put together from.
namespace pecas1921 {

QLabel *etiqueta(const QString &nome, const QString &texto, QWidget *parceiro = nullptr);
QLabel *titulo(const QString &nome, const QString &texto);    // of a step
QLabel *paragrafo(const QString &nome, const QString &texto); // wraps
QPushButton *botao(const QString &nome, const QString &texto);
QLineEdit *caixa(const QString &nome, int caracteres); // shows, takes nothing; so wide at least
QComboBox *lista(const QString &nome, const QString &acessivel);
QDateEdit *data(const QString &nome, const QString &acessivel);
QTimeEdit *hora(const QString &nome, const QString &acessivel);
QGroupBox *grupo(const QString &nome, const QString &texto);
QFrame *moldura(const QString &nome);

// Selects the text, which becomes an entry when it is none yet.
void mostrarNaLista(QComboBox *lista, const QString &texto);

// One of the clickable labels above the frames: underlined while its frame is shown.
class Separador : public QAbstractButton {
    Q_OBJECT
public:
    Separador(const QString &nome, const QString &texto);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *evento) override;
    void enterEvent(QEnterEvent *evento) override;
    void leaveEvent(QEvent *evento) override;
};

// A name of any length: what does not fit ends in an ellipsis, the whole is its tool tip.
class EtiquetaCurta : public QLabel {
    Q_OBJECT
public:
    explicit EtiquetaCurta(const QString &nome);
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *evento) override;
};

// A label that answers to a click.
class EtiquetaClicavel : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;

Q_SIGNALS:
    void Click();

protected:
    void mouseReleaseEvent(QMouseEvent *evento) override;
};

// Keeps what the button's record cannot hold from being typed or pasted, and says what it was.
class FiltroDeRegisto : public QValidator {
    Q_OBJECT
public:
    // Besides what no record holds, the box refuses these.
    static void por(QLineEdit *caixa, const QString &recusados);
    // Of a text that comes from elsewhere, what the box would take.
    static QString oQueCabe(const QLineEdit *caixa, const QString &texto);

    State validate(QString &texto, int &posicao) const override;

private:
    FiltroDeRegisto(const QString &recusados, QLineEdit *caixa);
    bool cabe(QChar c) const;
    QString m_recusados;
    mutable QString m_recusado; // the first of the text that was refused last
};

} // namespace pecas1921
