#include "platform/chart/tracos.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace {

constexpr double alturaMinima = 4; // pixels of an unusual state in a crowded column
constexpr qsizetype poucos = 3;    // points in a column that are drawn one by one

// Cuts a segment to a rectangle; false when nothing of it lies inside.
bool cortar(QPointF &a, QPointF &b, const QRectF &r) {
    double t0 = 0;
    double t1 = 1;
    const QPointF d = b - a;
    const double p[] = {-d.x(), d.x(), -d.y(), d.y()};
    const double q[] = {a.x() - r.left(), r.right() - a.x(), a.y() - r.top(), r.bottom() - a.y()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0)
                return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0)
            t0 = std::max(t0, t);
        else
            t1 = std::min(t1, t);
    }
    if (t0 > t1)
        return false;
    const QPointF inicio = a;
    a = inicio + t0 * d;
    b = inicio + t1 * d;
    return true;
}

} // namespace

void Tracos::segmento(QPointF a, QPointF b, const QRectF &limite) {
    if ((!limite.contains(a) || !limite.contains(b)) && !cortar(a, b, limite))
        return;
    if (pontos.empty() || pontos.back() != a) {
        inicios.push_back(pontos.size());
        pontos.push_back(a);
    } else if (pontos.size() - inicios.back() >= 2 && a.y() == b.y() && pontos[pontos.size() - 2].y() == a.y() &&
               (b.x() - a.x()) * (a.x() - pontos[pontos.size() - 2].x()) >= 0) {
        pontos.back() = b; // goes on level
        return;
    }
    pontos.push_back(b);
}

Redutor::Redutor(const TSerie &serie, const Escala &escala, double lacuna)
    : m_serie(serie), m_escala(escala), m_lacuna(lacuna), m_ordem(serie.ordem()), m_x(serie.x().data()),
      m_y(serie.y().data()), m_estados(serie.estados()), m_base(serie.usual()),
      m_total(m_ordem ? m_ordem->size() : serie.Count()), m_tracos(m_estados ? estadosDoPonto.size() : 1) {
    m_usadas.reserve(m_tracos.size());
}

void Redutor::reduzir(qsizetype i, qsizetype fim) {
    while (i < fim) {
        const double coluna = std::floor(m_escala.px(x(i)) / m_escala.coluna + 0.5);
        const double limite = ((coluna + 0.5) * m_escala.coluna - m_escala.bx) / m_escala.ax;
        const qsizetype j = fimDaColuna(i, fim, limite);
        if (j - i <= poucos)
            for (qsizetype k = i; k < j; ++k)
                ponto(k);
        else
            this->coluna(i, j, coluna * m_escala.coluna);
        i = j;
    }
    quebrar();
}

// Columns are narrow: the end is looked for in growing strides.
qsizetype Redutor::fimDaColuna(qsizetype i, qsizetype fim, double limite) const {
    qsizetype passo = 1;
    qsizetype dentro = i; // known to be in the column
    while (dentro + passo < fim && x(dentro + passo) < limite) {
        dentro += passo;
        passo *= 2;
    }
    qsizetype fora = std::min(fim, dentro + passo);
    while (fora - dentro > 1) {
        const qsizetype meio = dentro + (fora - dentro) / 2;
        (x(meio) < limite ? dentro : fora) = meio;
    }
    return fora;
}

// Much longer than usual, and than one of the distances beside it: a series may change its pace.
bool Redutor::lacunaAntes(qsizetype k) const {
    if (k == 0)
        return true;
    const double d = x(k) - x(k - 1);
    if (!(d > m_lacuna))
        return false;
    constexpr double factor = 5;
    const bool antes = k >= 2 && d > factor * (x(k - 1) - x(k - 2));
    const bool depois = k + 1 < m_total && d > factor * (x(k + 1) - x(k));
    return antes || depois;
}

void Redutor::comecar(QPointF p, EstadoDoPonto estado) {
    quebrar();
    m_anterior = p;
    m_anteriorEra = estado;
    m_tem = m_so = true;
}

void Redutor::quebrar() {
    if (m_tem && m_so)
        tracosDe(m_anteriorEra).sozinhos.push_back(m_anterior);
    m_tem = m_so = false;
}

void Redutor::ligar(QPointF p, EstadoDoPonto estado) {
    if (m_serie.estilo == TSerie::Estilo::Degrau) {
        const QPointF canto(p.x(), m_anterior.y());
        tracosDe(m_anteriorEra).segmento(m_anterior, canto, m_escala.limite);
        tracosDe(estado).segmento(canto, p, m_escala.limite);
    } else {
        tracosDe(estado).segmento(m_anterior, p, m_escala.limite);
    }
    m_anterior = p;
    m_anteriorEra = estado;
    m_so = false;
}

void Redutor::ponto(qsizetype k) {
    const double valor = y(k);
    if (std::isnan(valor)) {
        quebrar();
        return;
    }
    const EstadoDoPonto c = estado(k);
    ++tracosDe(c).peso;
    const QPointF p(m_escala.px(x(k)), m_escala.py(valor));
    if (m_tem && !lacunaAntes(k))
        ligar(p, c);
    else
        comecar(p, c);
}

void Redutor::estender(EstadoDoPonto estado, double y, qsizetype pontos) {
    Extensao &e = extensao(estado);
    if (y < e.menor)
        e.menor = y;
    if (y > e.maior)
        e.maior = y;
    e.pontos += pontos;
}

// Each point with the stroke that leads to it. Comparisons with a NaN are false, which leaves it out.
void Redutor::cobrirUmPorUm(qsizetype k, qsizetype fim) {
    double anterior = y(k - 1);
    for (; k < fim; ++k) {
        const double v = y(k);
        Extensao &e = extensao(estado(k));
        const double menor = anterior < v ? anterior : v;
        const double maior = anterior > v ? anterior : v;
        e.menor = menor < e.menor ? menor : e.menor;
        e.maior = maior > e.maior ? maior : e.maior;
        ++e.pontos;
        anterior = v;
    }
}

// A whole block of one state is covered by its summary.
void Redutor::cobrirBloco(qsizetype k) {
    const TSerie::Resumo &r = m_serie.resumos()[k / TSerie::bloco];
    const bool umSo = !m_estados || std::popcount(r.estados) == 1;
    if (!umSo) {
        cobrirUmPorUm(k, k + TSerie::bloco);
    } else if (r.comValores) {
        const EstadoDoPonto c = estado(k);
        estender(c, m_y[k + r.menor], TSerie::bloco);
        estender(c, m_y[k + r.maior], 0);
        if (!std::isnan(m_y[k]))
            estender(c, m_y[k - 1], 0); // the stroke that leads here
    }
}

void Redutor::cobrir(qsizetype i, qsizetype j) {
    constexpr qsizetype bloco = TSerie::bloco;
    estender(estado(i), y(i), 1);
    qsizetype k = i + 1;
    while (k < j) {
        if (m_ordem) {
            cobrirUmPorUm(k, j);
            return;
        }
        const qsizetype fronteira = (k + bloco - 1) / bloco * bloco;
        if (k == fronteira && k + bloco <= j) {
            cobrirBloco(k);
            k += bloco;
        } else {
            const qsizetype ate = std::min(j, k == fronteira ? j : fronteira);
            cobrirUmPorUm(k, ate);
            k = ate;
        }
    }
}

void Redutor::coluna(qsizetype i, qsizetype j, double xc) {
    const bool solto = !m_tem || std::isnan(y(i)) || lacunaAntes(i);
    const bool acabaEmFalta = std::isnan(y(j - 1));
    while (i < j && std::isnan(y(i)))
        ++i;
    while (j > i && std::isnan(y(j - 1)))
        --j;
    if (i == j) {
        quebrar();
        return;
    }
    const QPointF primeiro(xc, m_escala.py(y(i)));
    if (solto)
        comecar(primeiro, estado(i));
    else
        ligar(primeiro, estado(i));

    cobrir(i, j);
    for (const EstadoDoPonto c : m_usadas) {
        const Extensao e = std::exchange(m_extensoes[size_t(c)], {});
        if (!(e.menor <= e.maior))
            continue;
        double cima = m_escala.py(e.maior);
        double baixo = m_escala.py(e.menor);
        tracosDe(c).peso += e.pontos;
        if (c != m_base && baixo - cima < alturaMinima) {
            const double meio = (cima + baixo) / 2;
            cima = meio - alturaMinima / 2;
            baixo = meio + alturaMinima / 2;
        }
        if (baixo - cima < 0.01)
            continue;
        tracosDe(c).segmento({xc, cima}, {xc, baixo}, m_escala.limite);
        m_so = false;
    }
    m_usadas.clear();
    m_anterior = {xc, m_escala.py(y(j - 1))};
    m_anteriorEra = estado(j - 1);
    if (acabaEmFalta)
        quebrar();
}
