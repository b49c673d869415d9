// What a line chart hands on: paper, picture, table.
#include "views/forms/formGrafico.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/exportado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "data/modMain.h"
#include "platform/chart/TChart.h"
#include "views/exportacao.h"
#include "views/forms/frmEsperaPraCriarGrafico.h"
#include "views/forms/saidaGrafico.h"

#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

namespace {

const QString seccaoMain = u"VISTREL_frmMain"_s;

} // namespace

void FormGrafico::criarSaidas() {
    connect(cmdImprimir(), &QPushButton::clicked, this, [this] { cmdImprimir_Click(); });
    auto *menu = new QMenu(cmdExport());
    menu->setObjectName(u"mnuExport"_s);
    const auto entrada = [&](const QString &nome, const QString &omissao, void (FormGrafico::*feito)()) {
        QAction *accao = menu->addAction(modTraducoes::texto(seccaoMain, nome, omissao));
        accao->setObjectName(nome);
        connect(accao, &QAction::triggered, this, feito);
    };
    entrada(u"mnuExportJPG"_s, u"JPG"_s, &FormGrafico::mnuExportJPG_Click);
    if (m_membro.comCSV)
        entrada(u"mnuExportCSV"_s, u"CSV"_s, &FormGrafico::mnuExportCSV_Click);
    cmdExport()->setMenu(menu);
    // The style leaves its arrow no distance from the text.
    cmdExport()->setMinimumWidth(cmdExport()->sizeHint().width() + 2 * fontMetrics().averageCharWidth());
}

void FormGrafico::cmdImprimir_Click() {
    Rotina(objectName(), "cmdImprimir_Click", [this] {
        saidaGrafico::Pagina pagina;
        pagina.relatorio = u"DataReportGraficoPrincipal"_s;
        pagina.titulo = texto(u"PrintTitle"_s, m_membro.tituloImpressao.toString()) + sufixoZoom();
        pagina.descricao = m_mostrado.descricao;
        pagina.media = lblMedia()->text();
        pagina.alarmes = texto(u"Alarm"_s, u"! = Alarmes"_s);
        saidaGrafico::imprimir(chart(), pagina, window());
    });
}

void FormGrafico::mnuExportJPG_Click() {
    Rotina(objectName(), "mnuExportJPG_Click",
           [this] { saidaGrafico::exportarJPG(chart(), m_membro.baseJPG.toString()); });
}

// Always the whole range that is drawn, whatever the zoom.
void FormGrafico::mnuExportCSV_Click() {
    Rotina(objectName(), "mnuExportCSV_Click", [this] {
        Dialogos *dialogos = estado().ambiente.dialogos;
        const QString proposto = modMain::CriarCaminhoCSV(m_membro.baseCSV.toString());
        const QString caminho =
            dialogos ? dialogos->gravarFicheiro(proposto, QFileInfo(proposto).path(), u"csv (*.csv)|*.csv"_s)
                     : QString();
        if (caminho.isEmpty() || m_emCarga)
            return;
        const Vigia vigia(this);
        const std::optional<qint64> linhas = ExportarCSV(caminho);
        if (vigia.vivo())
            m_emCarga = false;
        if (linhas && vigia.vivo())
            m_ilegiveis.relatar(fonteDeErros(objectName(), "ExportarCSV").constData());
        if (!linhas)
            dialogos->mensagem(modTraducoes::texto(seccaoMain, u"ExportError"_s, u"Erro ao Exportar..."_s));
        else if (*linhas == 0)
            dialogos->mensagem(
                modTraducoes::texto(seccaoMain, u"SemLeituras"_s, u"Não há leituras neste intervalo."_s));
        else
            anunciarExportado(caminho);
    });
}

// How many lines were written; nothing of a stopped or failed export.
std::optional<qint64> FormGrafico::ExportarCSV(const QString &caminho) {
    return Rotina(objectName(), "ExportarCSV", [&]() -> std::optional<qint64> {
        m_emCarga = true;
        m_parar = false;
        m_ilegiveis = {};
        const Vigia vigia(this);
        const CargaEmCurso carga(this, Trabalho::Exportacao);
        connect(carga.espera(), &frmEsperaPraCriarGrafico::cancelar, this, [this] { m_parar = true; });
        QList<QStringList> chaves;
        for (const Escolha &escolha : m_mostrado.escolhas)
            chaves.append(escolha.chave);
        const exportacao::PedidoCSV pedido{caminho,      m_membro.tabela, chaves, m_mostrado.intervalo(),
                                           m_membro.csv, &m_ilegiveis};
        return exportacao::escreverCSV(pedido, [&] {
            vigia.passar();
            pararSePedido();
        });
    });
}
