#include "views/forms/fontesListagem.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/forms/grelha.h"
#include "views/dispositivos.h"
#include "views/forms/painelSensores.h"

#include <QCheckBox>
#include <QVBoxLayout>

namespace {

constexpr int larguraDispIP = 90; // pixels

QString textoDe(const MembroListagem &membro, const QString &chave, const QString &omissao) {
    return modTraducoes::texto(modTraducoes::seccaoDe(membro.form.toString()), chave, omissao);
}

} // namespace

PainelVista *FonteLinhas::criarPainel(QWidget *pai) {
    m_painel = m_fabrica(pai);
    if (m_membro.comFiltro) {
        m_soComNota = criarCaixa(u"chkObservacoesPreenchidas"_s, u"Só Obsevações preenchidas"_s);
        m_painel->juntarOpcao({m_soComNota});
    }
    if (m_membro.comMedias) {
        m_soMedias = criarCaixa(u"chkLeiturasMedias"_s, u"Só leituras de Médias"_s);
        m_painel->juntarOpcao({m_soMedias});
    }
    return m_painel;
}

QCheckBox *FonteLinhas::criarCaixa(const QString &nome, const QString &omissao) const {
    auto *caixa = new QCheckBox(textoDe(m_membro, nome + u".Caption", omissao));
    caixa->setObjectName(nome);
    caixa->setAccessibleName(caixa->text());
    return caixa;
}

ConsultaListagem FonteLinhas::consulta() const {
    listagens::Pedido pedido;
    pedido.intervalo = Intervalo(m_painel->inicio(), m_painel->fim());
    for (const Escolha &escolha : m_painel->escolhas())
        pedido.chaves.append(escolha.chave);
    pedido.soComNota = m_soComNota && m_soComNota->isChecked();
    pedido.soMedias = m_soMedias && m_soMedias->isChecked();
    m_impressos.clear();
    for (size_t i = 0; i < m_membro.cabecalhos.size(); ++i) {
        const CabecalhoListagem &c = m_membro.cabecalhos[i];
        m_impressos.append({c.rotulo.toString(), textoDe(m_membro, c.chave.toString(), c.omissao.toString()) +
                                                     pedido.chaves.value(0).value(qsizetype(i))});
    }
    return listagens::consulta(m_membro, pedido);
}

PainelDispositivos::PainelDispositivos(const QString &form, QWidget *pai)
    : PainelVista(form, pai, u"Opções de Listagem"_s), m_grdDispositivos(new Grelha(u"grdDispositivos"_s)) {
    m_grdDispositivos->setColunas({texto(u"DispIP"_s, u"IP"_s), texto(u"DispNome"_s, u"Nome"_s)});
    m_grdDispositivos->setColumnWidth(
        0, std::max(larguraDispIP, fontMetrics().horizontalAdvance(u"000.000.000.000"_s) + 16));
    m_grdDispositivos->setAccessibleName(texto(u"AllDev"_s, u"Todos os dispositivos"_s));
    areaDeEscolha()->addWidget(m_grdDispositivos);
    connect(m_grdDispositivos, &Grelha::RequestEdit, this, &PainelVista::cmdConfirmar_Click);
    encher();
}

void PainelDispositivos::encher() {
    Rotina("frmListagemAlarmesMask.CarregarListaGeral", [this] {
        const QList<dispositivos::Dispositivo> lista = dispositivos::listar(Vigia(this));
        EstadoDaLinha estado = EstadoDaLinha::Par;
        const auto juntar = [&](const QString &ip, const QString &nome) {
            m_grdDispositivos->setEstadoDaLinha(m_grdDispositivos->adicionarLinha({ip, nome}), estado);
            estado = riscas::trocar(estado);
        };
        juntar(dispositivos::todos.toString(), texto(u"All"_s, u"Todos"_s));
        for (const dispositivos::Dispositivo &d : lista)
            juntar(d.ip, d.nome);
        m_grdDispositivos->setLinhaActual(0);
    });
}

QList<Escolha> PainelDispositivos::escolhas() const {
    const int linha = m_grdDispositivos->linhaActual();
    if (linha < 0 || m_grdDispositivos->celula(linha, 0) == dispositivos::todos)
        return {Escolha()};
    return {{{m_grdDispositivos->celula(linha, 0)}, m_grdDispositivos->celula(linha, 1)}};
}

QWidget *PainelDispositivos::primeiroControlo() const {
    return m_grdDispositivos;
}

PainelVista *FonteDispositivos::criarPainel(QWidget *pai) {
    m_painel = new PainelDispositivos(m_membro.form.toString(), pai);
    return m_painel;
}

ConsultaListagem FonteDispositivos::consulta() const {
    const Escolha escolha = m_painel->escolhas().first();
    const QString ip = escolha.chave.value(0);
    m_impresso = ip.isEmpty() ? textoDe(m_membro, u"AllDev"_s, u"Todos os dispositivos"_s) : escolha.nome;
    return listagens::consultaVerificados(m_membro, Intervalo(m_painel->inicio(), m_painel->fim()), ip);
}

QList<std::pair<QString, QString>> FonteDispositivos::cabecalhos() const {
    return {{u"lblDispositivos"_s, m_impresso}};
}

std::unique_ptr<FonteListagem> criarFonteListagem(const MembroListagem &membro) {
    if (membro.ligacao == LigacaoListagem::Verificados)
        return std::make_unique<FonteDispositivos>(membro);
    return std::make_unique<FonteLinhas>(
        membro, fabricaSensores({membro.form.toString(), membro.regra, membro.formGrupos.toString()}));
}
