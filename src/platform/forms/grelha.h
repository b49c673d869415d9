#pragma once

#include <QStringList>
#include <QTableView>

class ModeloGrelha;

// What a row is. Rows of the first two alternate; what else there is stands out, and the stripes go past it.
enum class EstadoDaLinha {
    Par,
    Impar,
    Marcada,     // ticked
    PorEliminar, // goes with the next save
    Desactivada, // a sensor that is switched off
    AmostraPar,  // samples of a logger button, in stripes of their own
    AmostraImpar,
    AlarmeAcima, // a run of such samples beyond a limit
    AlarmeAbaixo,
};

// A read-only list of text columns with a state for each row, which stripes it or marks it. Activating a row, by a
// double click or Enter, asks for it. Typing finds the next row that holds the text.
class Grelha : public QTableView {
    Q_OBJECT
public:
    explicit Grelha(const QString &nome, QWidget *pai = nullptr);

    void setColunas(const QStringList &titulos);
    int linhas() const;
    QString celula(int linha, int coluna) const;
    void setCelula(int linha, int coluna, const QString &texto);
    int linhaActual() const; // -1: none
    void setLinhaActual(int linha);

    void limpar();
    int adicionarLinha(const QStringList &celulas);
    void removerLinha(int linha);
    void alinharADireita(int coluna); // for numbers; its title too

    void setEstadoDaLinha(int linha, EstadoDaLinha estado);
    EstadoDaLinha estadoDaLinha(int linha) const;
    // Makes the stripes regular again; gives back the state of the next row.
    EstadoDaLinha riscar();

    void keyboardSearch(const QString &procurado) override;

Q_SIGNALS:
    void RequestEdit(int linha);

protected:
    void keyPressEvent(QKeyEvent *evento) override;
    void changeEvent(QEvent *evento) override;

private:
    ModeloGrelha *m_modelo;
    QString m_procurado;
    qint64 m_ultimaTecla = 0;
};

namespace riscas {
constexpr EstadoDaLinha trocar(EstadoDaLinha risca) {
    return risca == EstadoDaLinha::Par ? EstadoDaLinha::Impar : EstadoDaLinha::Par;
}
QColor cor(EstadoDaLinha estado, const QPalette &paleta);
// What a row that stands out looks like while it is selected: its own colour, stronger. Invalid for a mere stripe,
// which takes the palette's.
QColor corSeleccionada(EstadoDaLinha estado, const QPalette &paleta);
} // namespace riscas
