#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "core/modPassWord.h"
#include "core/modTraducoes.h"
#include "logger/forms/frmDS1921.h"
#include "logger/missoes.h"
#include "platform/forms/registoForms.h"

#include <QPushButton>

namespace {

constexpr qint16 objectivoEliminarMissao = 3;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

} // namespace

void frmDS1921::cmdPararMissao_Click() {
    m_cmdPararMissao->setEnabled(false);
    const QDateTime inicio = datas::lerDataHora(m_logica->caixas.txtInicioMissao);
    if (m_logica->caixas.txtInicioMissao.isEmpty())
        return;
    if (!perguntar(texto(u"PararMissao"_s, u"Deseja parar a missão?"_s))) {
        m_cmdPararMissao->setEnabled(true);
        return;
    }
    const bool antesDoInicio = estado().ambiente.agora() <= inicio;
    if (antesDoInicio &&
        !perguntar(texto(u"DataErr"_s, u"Erro, A data de fim de missao é anterior á data de inicio"_s) + u'\n' +
                   texto(u"DataErr2"_s, u"Para Terminar a missão é necessário inserir palavra-passe"_s) + u'\n' +
                   texto(u"DataErr3"_s, u"Deseja Continuar?"_s))) {
        m_cmdPararMissao->setEnabled(true);
        return;
    }
    passo("frmDS1921.TerminarMissao", [=, this] { TerminarMissao(antesDoInicio); });
}

// A mission with samples is closed and kept; one without is deleted, when the password allows it.
void frmDS1921::TerminarMissao(bool confirmado) {
    const Vigia vigia(this);
    vigia.passar();
    if (!m_logica->cabecaCompleta())
        return;
    const ChaveMissao chave = m_logica->chave();
    if (!confirmado && missoes::temAmostras(chave)) {
        missoes::fechar(chave, estado().ambiente.agora());
        acabarMissao();
        return;
    }
    if (!confirmado &&
        !perguntar(texto(u"DataErr4"_s, u"Aviso, não existem dados nesta missão"_s) + u'\n' +
                   texto(u"DataErr2"_s, u"Para Terminar a missão pode ser necessário inserir palavra-passe"_s) + u'\n' +
                   texto(u"DataErr3"_s, u"Deseja Continuar?"_s))) {
        lerRegistador(false);
        return;
    }
    m_clausulaMissao = chave;
    passo("frmDS1921.VerificarPassword", [this] { VerificarPassword(); });
}

void frmDS1921::VerificarPassword() {
    const QString pwd =
        modINI::GetSetting(estado().NomePrograma, u"CONFIGURACOES"_s, u"PWD"_s, modPassWord::pwdPorOmissao());
    estado().EliminarConfirmado = pwd.isEmpty();
    if (!pwd.isEmpty()) {
        estado().ObjectivoPassWord = objectivoEliminarMissao;
        comDialogo([] { registoForms().abrir(u"frmPassWord"_s); });
    }
    if (!estado().EliminarConfirmado) {
        m_cmdPararMissao->setEnabled(true);
        return;
    }
    missoes::EliminarMissao(m_clausulaMissao);
    m_clausulaMissao = {};
    acabarMissao();
}

void frmDS1921::acabarMissao() {
    cancelavel(false);
    LimparTexts();
    m_logica->terminarNoRegistador();
    lerRegistador(false);
}

bool frmDS1921::PerguntarResetRegistadorAntigo(const QString &pergunta) {
    if (!perguntar(pergunta))
        return false;
    FormatarDS1921();
    return true;
}

void frmDS1921::FormatarDS1921() {
    bool formatado = false;
    passo("frmDS1921.FormatarDS1921", [&, this] {
        try {
            formatado = m_logica->FormatarDS1921(passagemPaciente());
        } catch (const Falha &) { // the message below says it
        }
    });
    mostrarCaixas();
    if (formatado)
        lerRegistador(false);
    else
        criticar(texto(u"ResetErr"_s, u"Erro ao formatar Registador!"_s));
}
