#pragma once

#include <QDateTime>

#include <functional>
#include <optional>

// Runs of samples beyond a limit, above and below each on its own.
class SequenciasAlarme {
public:
    struct Sequencia {
        bool alta;
        QDateTime primeira, ultima;
    };
    using Fechada = std::function<void(const Sequencia &)>;

    SequenciasAlarme(double maximo, double minimo, Fechada fechada)
        : m_maximo(maximo), m_minimo(minimo), m_fechada(std::move(fechada)) {}

    void juntar(const QDateTime &data, double temperatura) {
        seguir(m_alta, true, temperatura >= m_maximo, data);
        seguir(m_baixa, false, temperatura <= m_minimo, data);
    }
    // The runs that reach the last sample.
    void fechar() {
        seguir(m_alta, true, false, {});
        seguir(m_baixa, false, false, {});
    }

private:
    void seguir(std::optional<Sequencia> &sequencia, bool alta, bool emAlarme, const QDateTime &data) {
        if (emAlarme) {
            if (!sequencia)
                sequencia = Sequencia{alta, data, data};
            sequencia->ultima = data;
        } else if (sequencia) {
            m_fechada(*sequencia);
            sequencia.reset();
        }
    }

    double m_maximo, m_minimo;
    Fechada m_fechada;
    std::optional<Sequencia> m_alta, m_baixa;
};
