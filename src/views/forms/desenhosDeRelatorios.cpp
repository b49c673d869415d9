#include "views/forms/desenhosDeRelatorios.h"

#include "core/literais.h"

#include <span>

namespace {

using Tipo = ControloDeRelatorio::Tipo;

struct Celula {
    QStringView seccao;
    QStringView nome;
    Tipo tipo;
    double esquerda;
    double largura;
    double corpo;
    bool negrito;
    Qt::AlignmentFlag alinhamento;
};

constexpr Celula titulo{u"Section4", u"lblTitulo", Tipo::Rotulo, 0, 1, 15, true, Qt::AlignLeft};
constexpr Celula descricao{u"Section4", u"lblDescricao", Tipo::Rotulo, 0, 1, 9, false, Qt::AlignLeft};
constexpr Celula media{u"Section4", u"lblMedia", Tipo::Rotulo, 0, 0.5, 9, true, Qt::AlignLeft};
constexpr Celula alarmes{u"Section4", u"lblAlarmes", Tipo::Rotulo, 0.5, 0.5, 9, false, Qt::AlignRight};
constexpr Celula imagem{u"Section2", u"imgChart", Tipo::Imagem, 0, 1, 9, false, Qt::AlignLeft};
constexpr Celula peGrafico{u"Section5", u"lblDataHora2", Tipo::Rotulo, 0, 0.6, 8, false, Qt::AlignLeft};
constexpr Celula peListagem{u"Section3", u"lblDataHora", Tipo::Rotulo, 0, 0.6, 8, false, Qt::AlignLeft};

constexpr Celula coluna(QStringView nome, double esquerda, double largura) {
    return {u"Section2", nome, Tipo::Rotulo, esquerda, largura, 9, true, Qt::AlignLeft};
}
constexpr Celula caixa(QStringView nome, double esquerda, double largura) {
    return {u"Section1", nome, Tipo::Caixa, esquerda, largura, 8.5, false, Qt::AlignLeft};
}

// Numbers end where their column label does.
constexpr Celula aDireita(Celula celula) {
    celula.alinhamento = Qt::AlignRight;
    return celula;
}

constexpr Celula graficoPrincipal[] = {titulo, descricao, media, alarmes, imagem, peGrafico};
constexpr Celula histogramaPrincipal[] = {
    titulo, descricao, {u"Section4", u"lblSensores", Tipo::Rotulo, 0, 1, 8.5, false, Qt::AlignLeft}, media, alarmes,
    imagem, peGrafico};
// Boxes bound by position and boxes bound by name print alike.
constexpr Celula listagem[] = {titulo,
                               descricao,
                               coluna(u"lblNome", 0, 0.23),
                               coluna(u"lblData", 0.23, 0.2),
                               aDireita(coluna(u"lblTemperatura", 0.43, 0.14)),
                               coluna(u"lblDescricao250", 0.6, 0.4),
                               caixa(u"txtNome", 0, 0.23),
                               caixa(u"txtData", 0.23, 0.2),
                               aDireita(caixa(u"txtTemperatura", 0.43, 0.14)),
                               caixa(u"txtDesc", 0.6, 0.4),
                               peListagem};
constexpr Celula alarmesDeSensores[] = {titulo,
                                        descricao,
                                        coluna(u"lblSensor", 0, 0.19),
                                        coluna(u"lblSensorNome", 0.19, 0.25),
                                        coluna(u"lblData", 0.44, 0.2),
                                        aDireita(coluna(u"lblMax", 0.64, 0.12)),
                                        aDireita(coluna(u"lblMin", 0.76, 0.12)),
                                        aDireita(coluna(u"lblTemperatura", 0.88, 0.12)),
                                        caixa(u"txtSensor", 0, 0.19),
                                        caixa(u"txtSensorNome", 0.19, 0.25),
                                        caixa(u"txtData", 0.44, 0.2),
                                        aDireita(caixa(u"txtMax", 0.64, 0.12)),
                                        aDireita(caixa(u"txtMin", 0.76, 0.12)),
                                        aDireita(caixa(u"txtTemperatura", 0.88, 0.12)),
                                        peListagem};
// Readings in scales of their own.
constexpr Celula listagemSensUI[] = {titulo,
                                     descricao,
                                     coluna(u"lblNome", 0, 0.19),
                                     coluna(u"lblData", 0.19, 0.2),
                                     aDireita(coluna(u"lblTemperatura", 0.39, 0.09)),
                                     coluna(u"lblEscala", 0.5, 0.22),
                                     coluna(u"lblDescricao250", 0.72, 0.28),
                                     caixa(u"txtNome", 0, 0.19),
                                     caixa(u"txtData", 0.19, 0.2),
                                     aDireita(caixa(u"txtTemperatura", 0.39, 0.09)),
                                     caixa(u"txtEscala", 0.5, 0.22),
                                     caixa(u"txtDesc", 0.72, 0.28),
                                     peListagem};

constexpr Celula alarmesSensUI[] = {titulo,
                                    descricao,
                                    coluna(u"lblSensor", 0, 0.14),
                                    coluna(u"lblSensorNome", 0.14, 0.2),
                                    coluna(u"lblData", 0.34, 0.15),
                                    aDireita(coluna(u"lblMax", 0.49, 0.08)),
                                    aDireita(coluna(u"lblMin", 0.57, 0.08)),
                                    aDireita(coluna(u"lblTemperatura", 0.65, 0.08)),
                                    coluna(u"lblEscala", 0.75, 0.25),
                                    caixa(u"txtSensor", 0, 0.14),
                                    caixa(u"txtSensorNome", 0.14, 0.2),
                                    caixa(u"txtData", 0.34, 0.15),
                                    aDireita(caixa(u"txtMax", 0.49, 0.08)),
                                    aDireita(caixa(u"txtMin", 0.57, 0.08)),
                                    aDireita(caixa(u"txtTemperatura", 0.65, 0.08)),
                                    caixa(u"txtEscala", 0.75, 0.25),
                                    peListagem};

// Samples of one mission, which the head of the page names.
constexpr Celula cabecaDaMissao(QStringView nome, double esquerda) {
    return {u"Section4", nome, Tipo::Rotulo, esquerda, 0.5, 9, false, Qt::AlignLeft};
}
constexpr Celula listagemLogger[] = {titulo,
                                     descricao,
                                     cabecaDaMissao(u"lblLoggerID", 0),
                                     cabecaDaMissao(u"lblNome", 0.5),
                                     cabecaDaMissao(u"lblMissao", 0),
                                     cabecaDaMissao(u"lblNMissao", 0.5),
                                     coluna(u"lblData", 0, 0.22),
                                     aDireita(coluna(u"lblMax", 0.22, 0.12)),
                                     aDireita(coluna(u"lblMin", 0.34, 0.12)),
                                     aDireita(coluna(u"lblTemperatura", 0.46, 0.11)),
                                     coluna(u"lblDescricao250", 0.6, 0.4),
                                     caixa(u"txtData", 0, 0.22),
                                     aDireita(caixa(u"txtMax", 0.22, 0.12)),
                                     aDireita(caixa(u"txtMin", 0.34, 0.12)),
                                     aDireita(caixa(u"txtTemperatura", 0.46, 0.11)),
                                     caixa(u"txtDesc", 0.6, 0.4),
                                     peListagem};
constexpr Celula alarmesLogger[] = {titulo,
                                    descricao,
                                    cabecaDaMissao(u"lblLoggerID", 0),
                                    cabecaDaMissao(u"lblNome", 0.5),
                                    cabecaDaMissao(u"lblMissao", 0),
                                    cabecaDaMissao(u"lblNMissao", 0.5),
                                    coluna(u"lblData", 0, 0.3),
                                    aDireita(coluna(u"lblMax", 0.3, 0.2)),
                                    aDireita(coluna(u"lblMin", 0.5, 0.2)),
                                    aDireita(coluna(u"lblTemperatura", 0.7, 0.3)),
                                    caixa(u"txtData", 0, 0.3),
                                    aDireita(caixa(u"txtMax", 0.3, 0.2)),
                                    aDireita(caixa(u"txtMin", 0.5, 0.2)),
                                    aDireita(caixa(u"txtTemperatura", 0.7, 0.3)),
                                    peListagem};

constexpr Celula alarmesVerificados[] = {titulo,
                                         {u"Section4", u"lblDispositivos", Tipo::Rotulo, 0, 1, 9, true, Qt::AlignLeft},
                                         descricao,
                                         coluna(u"lblDataI", 0, 0.14),
                                         coluna(u"lblDataF", 0.14, 0.14),
                                         coluna(u"lblDataV", 0.28, 0.14),
                                         coluna(u"lblVerifPor", 0.42, 0.16),
                                         coluna(u"lblDesc", 0.58, 0.42),
                                         caixa(u"txtDataI", 0, 0.14),
                                         caixa(u"txtDataF", 0.14, 0.14),
                                         caixa(u"txtDataV", 0.28, 0.14),
                                         caixa(u"txtVerifPor", 0.42, 0.16),
                                         caixa(u"txtDesc", 0.58, 0.42),
                                         peListagem};

struct Desenho {
    QStringView nome;
    QPageLayout::Orientation orientacao;
    std::span<const Celula> celulas;
};

constexpr Desenho desenhos[] = {
    {u"DataReportGraficoPrincipal", QPageLayout::Landscape, graficoPrincipal},
    {u"DataReportHistogramaPrincipal", QPageLayout::Landscape, histogramaPrincipal},
    {u"DataReportListagemTemp", QPageLayout::Portrait, listagem},
    {u"DataReportListagemMedias", QPageLayout::Portrait, listagem},
    {u"DataReportAlarmes", QPageLayout::Portrait, alarmesDeSensores},
    {u"DataReportListagemSensUI", QPageLayout::Portrait, listagemSensUI},
    {u"DataReportAlarmesSensUI", QPageLayout::Landscape, alarmesSensUI},
    {u"DataReportListagemLogger", QPageLayout::Portrait, listagemLogger},
    {u"DataReportAlarmesLogger", QPageLayout::Portrait, alarmesLogger},
    {u"DataReportListagemAlarmesMask", QPageLayout::Landscape, alarmesVerificados},
};

ControloDeRelatorio controloDe(const Celula &celula) {
    ControloDeRelatorio c;
    c.Name = celula.nome.toString();
    c.tipo = celula.tipo;
    c.esquerda = celula.esquerda;
    c.largura = celula.largura;
    c.corpo = celula.corpo;
    c.negrito = celula.negrito;
    c.alinhamento = celula.alinhamento;
    return c;
}

} // namespace

std::unique_ptr<DataReport> criarRelatorio(const QString &nome) {
    for (const Desenho &desenho : desenhos) {
        if (desenho.nome != nome)
            continue;
        QList<SeccaoDeRelatorio> seccoes;
        for (const Celula &celula : desenho.celulas) {
            if (seccoes.isEmpty() || seccoes.last().Name != celula.seccao)
                seccoes.append({celula.seccao.toString(), {}});
            seccoes.last().Controls.append(controloDe(celula));
        }
        return std::make_unique<DataReport>(nome, desenho.orientacao, seccoes);
    }
    return nullptr;
}
