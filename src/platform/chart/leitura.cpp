// The point that is read: found under the pointer or by the keys, told in a box and to screen readers.
#include "core/datas.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/textoMostrado.h"
#include "platform/chart/interno.h"

bool TChart::Interno::valido(const Alvo &a) const {
    if (a.serie < 0 || a.serie >= int(series.size()) || a.indice < 0)
        return false;
    const TSerie &s = *series[size_t(a.serie)];
    return s.Active && a.indice < s.Count() && !std::isnan(s.YValue(a.indice)) && !std::isnan(s.XValue(a.indice));
}

TChart::Interno::Alvo TChart::Interno::procurar(const QPointF &posicao, double raio) const {
    Alvo melhor;
    double d2 = 0;
    if (!area().adjusted(-4, -4, 4, 4).contains(posicao.toPoint()))
        return melhor;
    for (size_t k = 0; k < plots.size(); ++k) {
        if (!series[k]->Active)
            continue;
        const PlotSerie::Achado achado = plots[k]->maisProximo(posicao, raio);
        if (achado.indice >= 0 && (melhor.serie < 0 || achado.distancia2 < d2)) {
            melhor = {int(k), achado.indice};
            d2 = achado.distancia2;
        }
    }
    return melhor;
}

void TChart::Interno::apontar(const Alvo &a) {
    if (a == alvo && (a.serie < 0 || sobre->comLeitura()))
        return;
    alvo = a;
    notaDoAlvo.clear();
    notaPedida = false;
    if (valido(alvo)) {
        mostrarLeitura();
        return;
    }
    alvo = {};
    repouso.stop();
    sobre->esconderLeitura();
    contar();
}

void TChart::Interno::contar() {
    QStringList partes{aviso, rodape};
    partes.removeAll(QString());
    if (!valido(alvo))
        q->setAccessibleDescription(partes.join(u' '));
}

QString TChart::Interno::instanteDe(const Alvo &a) const {
    const TSerie &s = *series[size_t(a.serie)];
    if (s.estilo == TSerie::Estilo::Barra)
        return s.PointLabel(a.indice);
    return datas::textoDataHora(datas::instanteDe(s.XValue(a.indice)));
}

void TChart::Interno::mostrarLeitura() {
    quadro->dispor();
    const TSerie &s = *series[size_t(alvo.serie)];
    const PlotSerie &plot = *plots[size_t(alvo.serie)];
    Sobreposicao::Leitura l;
    l.ponto = plot.posicao(alvo.indice);
    l.cor = plot.corDoPonto(alvo.indice);
    l.titulo = s.Title;
    l.instante = instanteDe(alvo);
    const bool barra = s.estilo == TSerie::Estilo::Barra; // counts, not values of a quantity
    const double valor = s.YValue(alvo.indice);
    l.valor = barra ? modDoubleTratamento::NumeroParaTexto(valor)
                    : modDoubleTratamento::NumeroParaTexto(valor, casas) + unidade;
    l.nota = notaDoAlvo;
    sobre->definirArea(area());
    sobre->mostrarLeitura(l);
    QStringList partes{textoMostrado::linha(l.titulo), l.instante, l.valor, textoMostrado::paragrafos(l.nota)};
    partes.removeAll(QString());
    q->setAccessibleDescription(partes.join(u", "_s));
    if (nota && !notaPedida && !barra && s.temMarca(alvo.indice))
        repouso.start();
}

// Once for a point, and only when the pointer rests on it: it may have to be looked up.
void TChart::Interno::pedirNota() {
    if (!nota || notaPedida || !valido(alvo))
        return;
    notaPedida = true;
    const Alvo pedido = alvo;
    const QString texto = nota(pedido.serie, int(pedido.indice));
    if (!(pedido == alvo) || !valido(alvo))
        return;
    notaDoAlvo = texto.trimmed();
    mostrarLeitura();
}

void TChart::Interno::serieRetirada(int indice) {
    if (alvo.serie == indice)
        apontar({});
    else if (alvo.serie > indice)
        --alvo.serie;
    quadro->pedir();
}
