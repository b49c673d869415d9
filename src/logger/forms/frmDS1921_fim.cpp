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

QString frmDS1921::comCausa(const QString &mensagem) const {
    return QStringList{mensagem, m_logica->causa()}.join(u'\n').trimmed();
}

// The button that was read is the one on the reader, as it was read; otherwise that is said, and it has to be read.
bool frmDS1921::conferirRegistador(const QString &senao) {
    if (passo("frmDS1921.VerificarROMID", [this] { return m_logica->VerificarROMID(); }))
        return true;
    const QString mensagem = comCausa(senao);
    esquecerRegistador();
    criticar(mensagem);
    return false;
}

// A mission that was stopped elsewhere may have left samples, which a new one wipes.
bool frmDS1921::confirmarPrograma() {
    m_aceites = m_logica->porGuardar();
    return m_aceites == 0 ||
           perguntar(texto(u"PerdeAoProgramar"_s, u"Programar apaga as amostras que o registador ainda tem."_s) +
                     u'\n' + m_logica->oQueSePerde() + u'\n' + texto(u"DataErr3"_s, u"Deseja Continuar?"_s));
}

void frmDS1921::cmdPararMissao_Click() {
    m_cmdPararMissao->setEnabled(false);
    if (m_logica->caixas.txtInicioMissao.isEmpty() || !conferirRegistador())
        return;
    const QDateTime inicio = datas::lerDataHora(m_logica->caixas.txtInicioMissao);
    m_aceites = m_logica->porGuardar();
    if (!perguntar(texto(u"PararMissao"_s, u"Deseja parar a missão?"_s) + u'\n' + m_logica->oQueSePerde())) {
        m_cmdPararMissao->setEnabled(true);
        return;
    }
    const bool antesDoInicio = estado().ambiente.agora() <= inicio;
    if (antesDoInicio &&
        !perguntar(texto(u"DataErr"_s, u"Erro, A data de fim de missao é anterior á data de inicio"_s) + u'\n' +
                   texto(u"DataErr2"_s, u"Para Terminar a missão é necessário inserir palavra-passe"_s) + u'\n' +
                   texto(u"DataErr3"_s, u"Deseja Continuar?"_s) + u'\n' + eliminadas())) {
        m_cmdPararMissao->setEnabled(true);
        return;
    }
    passo("frmDS1921.TerminarMissao", [=, this] { TerminarMissao(antesDoInicio); });
}

// What the deletion of the mission takes out of the database.
QString frmDS1921::eliminadas() const {
    return texto(u"PerdeGuardadas"_s, u"A missão é eliminada, com as amostras guardadas: %1"_s)
               .arg(missoes::contarAmostras(m_logica->chave())) +
           u'\n' + m_logica->oQueSePerde();
}

// A mission with samples is closed and kept; one without is deleted, when the password allows it.
void frmDS1921::TerminarMissao(bool confirmado) {
    const Vigia vigia(this);
    vigia.passar();
    if (!m_logica->cabecaCompleta())
        return;
    const ChaveMissao chave = m_logica->chave();
    if (!confirmado && missoes::temAmostras(chave))
        return acabarMissao([chave] { missoes::fechar(chave, estado().ambiente.agora()); });
    if (!confirmado &&
        !perguntar(texto(u"DataErr4"_s, u"Aviso, não existem dados nesta missão"_s) + u'\n' +
                   texto(u"DataErr2"_s, u"Para Terminar a missão pode ser necessário inserir palavra-passe"_s) + u'\n' +
                   texto(u"DataErr3"_s, u"Deseja Continuar?"_s) + u'\n' + eliminadas())) {
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
    if (!conferirRegistador())
        return;
    if (m_logica->porGuardar() > m_aceites) // more than was told
        return cmdPararMissao_Click();
    m_aceites = m_logica->controlo.AmostrasNaMemoria; // none of them is stored any more
    missoes::EliminarMissao(m_clausulaMissao);
    m_clausulaMissao = {};
    acabarMissao([] {});
}

void frmDS1921::acabarMissao(const std::function<void()> &aoTerminar) {
    cancelavel(false);
    const ControloDS1921::Fim fim = m_logica->terminarNoRegistador(m_aceites, aoTerminar);
    if (fim == ControloDS1921::Fim::Nenhum) {
        const QString mensagem =
            comCausa(texto(u"TerminarErr"_s, u"O registador não confirmou o fim da missão: leia-o de novo."_s));
        esquecerRegistador();
        criticar(mensagem);
        return;
    }
    LimparTexts();
    if (fim == ControloDS1921::Fim::Terminada)
        criticar(texto(u"MemoriaPorLimpar"_s, u"A missão foi terminada, mas a memória do registador não foi apagada: "
                                              "leia os dados antes de o programar de novo."_s));
    lerRegistador(false);
}

// False: the user did not want it.
bool frmDS1921::PerguntarResetRegistadorAntigo(const QString &pergunta) {
    if (!conferirRegistador(texto(u"ResetErr"_s, u"Erro ao formatar Registador!"_s)))
        return true;
    m_aceites = m_logica->porGuardar();
    if (!perguntar(pergunta + u'\n' + m_logica->oQueSePerde()))
        return false;
    FormatarDS1921();
    return true;
}

void frmDS1921::FormatarDS1921() {
    bool formatado = false;
    passo("frmDS1921.FormatarDS1921", [&, this] {
        try {
            formatado = m_logica->FormatarDS1921(m_aceites, passagemPaciente());
        } catch (const Falha &) { // the message below says it
        }
    });
    if (formatado) {
        lerRegistador(false);
        return;
    }
    const QString mensagem = comCausa(texto(u"ResetErr"_s, u"Erro ao formatar Registador!"_s));
    esquecerRegistador();
    criticar(mensagem);
}
