#include "devicestate/forms/paineisEstados.h"

#include "core/rotina.h"
#include "devicestate/forms/listaMarcada.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

int larguraDoTexto(const QWidget *w, const QString &texto) {
    return w->fontMetrics().horizontalAdvance(texto) + 16;
}

} // namespace

PainelCanais::PainelCanais(const entradas::Especie &especie, QWidget *pai)
    : PainelVista(especie.grafico.form.toString(), pai), m_especie(especie) {
    const QString nome = texto(u"ReyFrameDispNome.Caption"_s, u"Name"_s);
    m_grdDispositivos = new ListaMarcada(u"grdDispositivos"_s, {texto(u"ReyFrameIP.Caption"_s, u"IP"_s), nome});
    m_grdDispositivos->setAccessibleName(nome);
    m_grdDispositivos->setColumnWidth(1, larguraDoTexto(this, u"000.000.000.000"_s));
    const QString canais = texto(u"ReyFrameInputNome.Caption"_s, especie.omissaoNome.toString());
    m_canais = new ListaMarcada(u"grdInputs"_s, {texto(especie.chaveNumero.toString(), u"Num"_s), canais});
    m_canais->setAccessibleName(canais);
    m_canais->setColumnWidth(1, larguraDoTexto(this, u"00000"_s));
    auto *listas = new QHBoxLayout;
    listas->addWidget(m_grdDispositivos);
    listas->addWidget(m_canais);
    areaDeEscolha()->addLayout(listas);
    connect(m_grdDispositivos, &ListaMarcada::mudou, this, &PainelCanais::dispositivoMudou);
    CarregarListaGeral();
}

void PainelCanais::CarregarListaGeral() {
    Rotina(m_especie.grafico.form, "CarregarListaGeral", [this] {
        for (const entradas::Canal &d : entradas::dispositivos(m_especie, Vigia(this)))
            if (!VerificarSeIPjaEstaNaLista(d.ip))
                m_grdDispositivos->juntar({d.ip, d.nome});
        m_grdDispositivos->setLinhaActual(0);
    });
}

bool PainelCanais::VerificarSeIPjaEstaNaLista(const QString &ip) const {
    for (int i = 0; i < m_grdDispositivos->linhas(); ++i)
        if (m_grdDispositivos->texto(i, 0).compare(ip, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

void PainelCanais::CarregarListaGeral_Canais(const QString &ip) {
    Rotina(m_especie.grafico.form, "CarregarListaGeral_Canais", [&] {
        for (const entradas::Canal &c : entradas::canais(m_especie, ip, Vigia(this))) {
            m_canais->juntar({c.numero, c.nome});
            m_ipsDosCanais.append(c.ip);
        }
        if (m_canais->linhaActual() < 0)
            m_canais->setLinhaActual(0);
    });
}

void PainelCanais::dispositivoMudou(int linha) {
    const QString ip = m_grdDispositivos->texto(linha, 0);
    if (m_grdDispositivos->marcada(linha))
        return CarregarListaGeral_Canais(ip);
    for (int i = m_canais->linhas() - 1; i >= 0; --i)
        if (m_ipsDosCanais[i] == ip) {
            m_canais->removerLinha(i);
            m_ipsDosCanais.removeAt(i);
        }
}

QList<Escolha> PainelCanais::escolhas() const {
    QList<Escolha> lista;
    for (int i = 0; i < m_canais->linhas(); ++i)
        if (m_canais->marcada(i))
            lista.append({{m_ipsDosCanais[i], m_canais->texto(i, 0)}, m_canais->texto(i, 1)});
    for (Escolha &canal : lista)
        if (canal.nome.isEmpty())
            canal.nome = canal.textoDaChave();
    return lista;
}

QWidget *PainelCanais::primeiroControlo() const {
    return m_grdDispositivos;
}

PainelCondicoes::PainelCondicoes(const condicoes::Especie &especie, QWidget *pai)
    : PainelVista(especie.grafico.form.toString(), pai), m_especie(especie) {
    const QString nome = texto(u"ReyFrameDispNome.Caption"_s, u"Name"_s);
    m_grdCondicoes = new ListaMarcada(u"grdCondicoes"_s, {texto(u"CondCode"_s, u"ID"_s), nome});
    m_grdCondicoes->setAccessibleName(nome);
    m_grdCondicoes->setColumnWidth(1, larguraDoTexto(this, u"0000000000"_s));
    areaDeEscolha()->addWidget(m_grdCondicoes);
    CarregarListaGeral();
}

void PainelCondicoes::CarregarListaGeral() {
    Rotina(m_especie.grafico.form, "CarregarListaGeral", [this] {
        for (const Escolha &condicao : condicoes::listar(m_especie, Vigia(this)))
            m_grdCondicoes->juntar({condicao.chave.first(), condicao.nome});
        m_grdCondicoes->setLinhaActual(0);
    });
}

QList<Escolha> PainelCondicoes::escolhas() const {
    QList<Escolha> lista;
    for (int i = 0; i < m_grdCondicoes->linhas(); ++i)
        if (m_grdCondicoes->marcada(i))
            lista.append({{m_grdCondicoes->texto(i, 0)}, m_grdCondicoes->texto(i, 1)});
    return lista;
}

QWidget *PainelCondicoes::primeiroControlo() const {
    return m_grdCondicoes;
}
