#include "platform/chart/tema.h"

#include "platform/chart/cores.h"

#include <QFontInfo>

#include <cmath>

namespace {

constexpr double contrasteMinimo = 3; // what lines and marks need to be told from their background

double linear(double c) {
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double luminancia(const QColor &cor) {
    return 0.2126 * linear(cor.redF()) + 0.7152 * linear(cor.greenF()) + 0.0722 * linear(cor.blueF());
}

Tema tema(const QColor &fundo, const QColor &texto, const QFont &fonte) {
    Tema t;
    t.fundo = fundo;
    t.texto = texto;
    t.secundario = misturar(texto, fundo, 0.25);
    const bool escuro = luminancia(fundo) < 0.18;
    t.grelha = misturar(fundo, texto, escuro ? 0.20 : 0.15);
    t.grelhaFina = misturar(fundo, texto, escuro ? 0.09 : 0.06);
    t.eixo = misturar(texto, fundo, 0.4);
    t.caixa = escuro ? misturar(fundo, texto, 0.10) : fundo;
    t.fonte = fonte;
    return t;
}

} // namespace

QColor misturar(const QColor &a, const QColor &b, double p) {
    const auto canal = [p](int x, int y) { return int(std::lround(x + (y - x) * p)); };
    return QColor(canal(a.red(), b.red()), canal(a.green(), b.green()), canal(a.blue(), b.blue()));
}

double contraste(const QColor &a, const QColor &b) {
    const double la = luminancia(a);
    const double lb = luminancia(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

Tema Tema::doEcra(const QPalette &paleta, const QFont &fonte) {
    QFont emPixeis = fonte;
    emPixeis.setPixelSize(QFontInfo(fonte).pixelSize());
    Tema t = tema(paleta.color(QPalette::Base), paleta.color(QPalette::Text), emPixeis);
    t.realce = paleta.color(QPalette::Highlight);
    return t;
}

Tema Tema::doPapel(const QFont &fonte) {
    QFont emPixeis = fonte;
    emPixeis.setPixelSize(12);
    Tema t = tema(Qt::white, Qt::black, emPixeis);
    t.realce = Qt::black;
    t.papel = true;
    return t;
}

QColor Tema::doPonto(EstadoDoPonto estado, quint32 corDaSerie) const {
    const quint32 ole = estado == EstadoDoPonto::Acima    ? cores::maximo
                        : estado == EstadoDoPonto::Abaixo ? cores::minimo
                                                          : corDaSerie;
    return legivel(QColor(int(ole & 0xFF), int((ole >> 8) & 0xFF), int((ole >> 16) & 0xFF)));
}

Tema::Forma Tema::forma(EstadoDoPonto estado) {
    return estado == EstadoDoPonto::Acima    ? Forma::Cima
           : estado == EstadoDoPonto::Abaixo ? Forma::Baixo
                                             : Forma::Circulo;
}

QColor Tema::legivel(const QColor &cor) const {
    const auto achada = m_legiveis.constFind(cor.rgb());
    if (achada != m_legiveis.cend())
        return *achada;
    QColor boa = cor;
    if (contraste(cor, fundo) < contrasteMinimo) {
        float h, s, l;
        cor.getHslF(&h, &s, &l);
        const bool clarear = luminancia(fundo) < 0.18;
        float mau = l;
        float bom = clarear ? 1 : 0;
        for (int i = 0; i < 12; ++i) {
            const float meio = (mau + bom) / 2;
            const bool chega = contraste(QColor::fromHslF(std::max(h, 0.F), s, meio), fundo) >= contrasteMinimo;
            (chega ? bom : mau) = meio;
        }
        boa = QColor::fromHslF(std::max(h, 0.F), s, bom);
    }
    m_legiveis.insert(cor.rgb(), boa);
    return boa;
}
