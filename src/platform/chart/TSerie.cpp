#include "platform/chart/TSerie.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr qsizetype maximoDeIndices = 256;
constexpr size_t guardados = 1 << 21; // points whose memory a cleared series keeps

bool mostraSe(const QString &rotulo) {
    return !rotulo.isEmpty() && rotulo != QLatin1String(" ");
}

} // namespace

TSerie::TSerie(Estilo e) : estilo(e) {}

void TSerie::Clear() {
    TSerie vazia(estilo);
    vazia.Active = Active;
    vazia.traco = traco;
    vazia.Color = Color;
    vazia.Title = Title;
    vazia.Name = Name;
    // What comes next is mostly the same range again: fresh memory would cost more than filling it.
    if (m_x.capacity() <= guardados) {
        vazia.m_x = std::move(m_x);
        vazia.m_y = std::move(m_y);
        vazia.m_x.clear();
        vazia.m_y.clear();
    }
    *this = std::move(vazia);
}

void TSerie::reservar(qsizetype pontos) {
    m_x.reserve(size_t(pontos));
    m_y.reserve(size_t(pontos));
}

qsizetype TSerie::Add(double y, const QString &rotulo, EstadoDoPonto estado) {
    return AddXY(double(Count()), y, rotulo, estado);
}

void TSerie::juntarEstado(EstadoDoPonto estado) {
    if (m_estados.empty()) {
        m_estados.reserve(m_x.capacity());
        m_estados.resize(m_x.size() - 1); // all normal
    }
    m_estados.push_back(estado);
}

void TSerie::juntarRotulo(const QString &rotulo) {
    const qsizetype n = Count();
    if (!m_rotulosProprios.isEmpty()) {
        m_rotulosProprios.append(rotulo);
        return;
    }
    if (m_textos.isEmpty())
        m_textos.append(rotulo);
    if (!m_rotulos.isEmpty())
        m_rotulos.append(quint8(0));
    if (rotulo != m_textos.constFirst())
        escreverRotulo(n - 1, rotulo);
}

// The point exists; the list of indices, when there is one, already has a place for it.
void TSerie::escreverRotulo(qsizetype i, const QString &rotulo) {
    if (!m_rotulosProprios.isEmpty()) {
        m_rotulosProprios[i] = rotulo;
        return;
    }
    qsizetype k = m_textos.indexOf(rotulo);
    if (k < 0 && m_textos.size() == maximoDeIndices) {
        separarRotulos();
        m_rotulosProprios[i] = rotulo;
        return;
    }
    if (k < 0) {
        k = m_textos.size();
        m_textos.append(rotulo);
    }
    if (m_rotulos.isEmpty()) {
        if (k == 0)
            return;
        m_rotulos.reserve(qsizetype(m_x.capacity()));
        m_rotulos.resize(Count());
    }
    m_rotulos[i] = quint8(k);
}

void TSerie::separarRotulos() {
    m_rotulosProprios.reserve(qsizetype(m_x.capacity()));
    for (quint8 k : std::as_const(m_rotulos))
        m_rotulosProprios.append(m_textos[k]);
    m_rotulos = {};
    m_textos = {};
}

QString TSerie::PointLabel(qsizetype i) const {
    if (!m_rotulosProprios.isEmpty())
        return m_rotulosProprios[i];
    return m_textos[m_rotulos.isEmpty() ? 0 : m_rotulos[i]];
}

void TSerie::setPointLabel(qsizetype i, const QString &rotulo) {
    const bool antes = temMarca(i);
    escreverRotulo(i, rotulo);
    if (i / bloco < m_resumos.size())
        m_resumos[i / bloco].marcas += int(mostraSe(rotulo)) - int(antes);
}

bool TSerie::temMarca(qsizetype i) const {
    return mostraSe(PointLabel(i));
}

void TSerie::resumir() {
    const qsizetype inicio = Count() - bloco;
    const double *y = m_y.data() + inicio;
    double menor = std::numeric_limits<double>::infinity();
    double maior = -menor;
    for (qsizetype k = 0; k < bloco; ++k) { // no comparison with a NaN holds
        menor = y[k] < menor ? y[k] : menor;
        maior = y[k] > maior ? y[k] : maior;
    }
    Resumo r;
    r.comValores = menor <= maior;
    if (r.comValores) {
        r.menor = quint8(std::find(y, y + bloco, menor) - y);
        r.maior = quint8(std::find(y, y + bloco, maior) - y);
    }
    if (m_estados.empty())
        r.estados = 1;
    else
        for (auto estado = m_estados.cbegin() + inicio; estado != m_estados.cend(); ++estado)
            r.estados |= quint8(1U << quint8(*estado));
    for (qsizetype k = proximaMarca(inicio, Count()); k < Count(); k = proximaMarca(k + 1, Count()))
        ++r.marcas;
    m_resumos.append(r);
}

qsizetype TSerie::proximaMarca(qsizetype i, qsizetype fim) const {
    if (!m_rotulosProprios.isEmpty()) {
        while (i < fim && !mostraSe(m_rotulosProprios[i]))
            ++i;
        return i;
    }
    if (m_rotulos.isEmpty())
        return m_textos.isEmpty() || !mostraSe(m_textos.constFirst()) ? fim : i;
    bool visivel[maximoDeIndices] = {};
    for (qsizetype k = 0; k < m_textos.size(); ++k)
        visivel[k] = mostraSe(m_textos[k]);
    const quint8 *rotulos = m_rotulos.constData();
    while (i < fim) {
        const qsizetype b = i / bloco;
        if (b < m_resumos.size() && m_resumos[b].marcas == 0) {
            i = (b + 1) * bloco;
            continue;
        }
        if (visivel[rotulos[i]])
            return i;
        ++i;
    }
    return fim;
}

const QList<quint32> *TSerie::ordem() const {
    if (m_porOrdem)
        return nullptr;
    if (m_ordenados != Count()) {
        const double *x = m_x.data();
        m_ordem.clear();
        m_ordem.reserve(Count());
        for (qsizetype i = 0; i < Count(); ++i)
            if (!std::isnan(x[i]))
                m_ordem.append(quint32(i));
        std::stable_sort(m_ordem.begin(), m_ordem.end(), [x](quint32 a, quint32 b) { return x[a] < x[b]; });
        m_ordenados = Count();
    }
    return &m_ordem;
}
