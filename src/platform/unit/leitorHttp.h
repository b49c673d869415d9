#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <optional>
#include <utility>

// One HTTP/1 answer read as its bytes arrive, with limits. No sockets here.
class LeitorHttp {
public:
    enum class Ponto {
        Cabeca, // reading the status line and the fields
        Corpo,
        Fim, // complete; with status 101 the bytes behind the head belong to the new protocol
        Malformada,
        Grande,    // body over the limit
        Excedente, // bytes behind the announced end
        Cortada,   // closed in the middle
    };
    static constexpr qsizetype cabecaMaxima = 16 * 1024;

    explicit LeitorHttp(qint64 corpoMaximo) : m_limite(corpoMaximo) {}
    Ponto alimentar(QByteArrayView bytes);
    Ponto fechado(); // the other side has closed in order

    Ponto ponto() const { return m_ponto; }
    bool terminado() const { return m_ponto != Ponto::Cabeca && m_ponto != Ponto::Corpo; }
    bool vazio() const { return !m_algum; } // not a byte yet
    bool temCabeca() const { return m_estado > 0; }
    int estado() const { return m_estado; }
    QByteArray campo(const QByteArray &nomeMinusculo) const; // all of that name, joined by ", "
    const QByteArray &corpo() const { return m_corpo; }
    QByteArray resto() const { return m_entrada; }

private:
    enum class Medida { Ate, Comprimento, Pedacos };
    bool lerCabeca();
    bool lerLinhaDeEstado(QByteArrayView linha);
    bool lerCampo(QByteArrayView linha);
    void medirCorpo();
    void lerCorpo();
    void lerPedacos();
    bool lerTamanhoDoPedaco();
    void acabar();
    void juntar(qsizetype quantos);

    Ponto m_ponto = Ponto::Cabeca;
    Medida m_medida = Medida::Ate;
    qint64 m_limite;
    qint64 m_falta = 0; // of the body or of the chunk
    bool m_noPedaco = false;
    bool m_ultimoPedaco = false;
    bool m_algum = false;
    int m_estado = 0;
    QByteArray m_entrada;
    QByteArray m_corpo;
    QList<std::pair<QByteArray, QByteArray>> m_campos;
};
