#include "platform/chart/TSerie.h"

#include "core/literais.h"

namespace {

constexpr qsizetype maximoDeIndices = 255;

// The index of a value in a small table, added when it is new; the last entry serves when the table is full.
template <typename Tabela, typename Valor>
quint8 indiceEm(Tabela &tabela, const Valor &valor) {
    qsizetype i = tabela.indexOf(valor);
    if (i < 0 && tabela.size() < maximoDeIndices) {
        tabela.append(valor);
        i = tabela.size() - 1;
    }
    return quint8(i < 0 ? tabela.size() - 1 : i);
}

// Bytes are only held from the first point that differs on.
void juntarIndice(QList<quint8> &indices, quint8 indice, qsizetype anteriores) {
    if (indices.isEmpty() && indice == 0)
        return;
    if (indices.isEmpty())
        indices.fill(0, anteriores);
    indices.append(indice);
}

} // namespace

TSerie::TSerie(Estilo e) : estilo(e) {}

void TSerie::Clear() {
    m_x = {};
    m_y = {};
    m_cores = {};
    m_rotulos = {};
    m_paleta.clear();
    m_textos.clear();
    m_rotulosBarra.clear();
}

void TSerie::reservar(qsizetype pontos) {
    m_x.reserve(pontos);
    m_y.reserve(pontos);
}

qsizetype TSerie::AddXY(double x, double y, const QString &rotulo, quint32 cor) {
    const qsizetype n = m_x.size();
    juntarIndice(m_cores,
                 !m_paleta.isEmpty() && m_paleta.last() == cor ? quint8(m_paleta.size() - 1) : indiceEm(m_paleta, cor),
                 n);
    if (estilo == Estilo::Barra)
        m_rotulosBarra.append(rotulo);
    else
        juntarIndice(m_rotulos, indiceEm(m_textos, rotulo), n);
    m_x.append(x);
    m_y.append(y);
    return n;
}

qsizetype TSerie::Add(double y, const QString &rotulo, quint32 cor) {
    return AddXY(double(Count()), y, rotulo, cor);
}

QString TSerie::PointLabel(qsizetype i) const {
    if (estilo == Estilo::Barra)
        return m_rotulosBarra.at(i);
    return m_textos.at(m_rotulos.isEmpty() ? 0 : m_rotulos.at(i));
}

void TSerie::setPointLabel(qsizetype i, const QString &rotulo) {
    if (estilo == Estilo::Barra) {
        m_rotulosBarra[i] = rotulo;
        return;
    }
    const quint8 indice = indiceEm(m_textos, rotulo);
    if (m_rotulos.isEmpty() && indice != 0)
        m_rotulos.fill(0, m_x.size());
    if (!m_rotulos.isEmpty())
        m_rotulos[i] = indice;
}

bool TSerie::comMarcas() const {
    for (const QString &texto : m_textos)
        if (eMarca(texto))
            return true;
    return false;
}

bool TSerie::eMarca(const QString &rotulo) {
    return !rotulo.isEmpty() && rotulo != u" "_s;
}

quint32 TSerie::PointColor(qsizetype i) const {
    if (!ColorEachPoint && estilo != Estilo::Barra)
        return Color;
    return m_paleta.at(m_cores.isEmpty() ? 0 : m_cores.at(i));
}
