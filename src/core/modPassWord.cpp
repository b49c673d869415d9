#include "core/modPassWord.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modEncriptPrincipal.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"

namespace {

const QString seccao = u"CONFIGURACOES"_s;
const QString chave = u"PWD"_s;

QString guardada() {
    return modINI::GetSetting(estado().NomePrograma, seccao, chave, modPassWord::pwdPorOmissao());
}

bool coincide(const QString &digitada) {
    return !digitada.isEmpty() && digitada == modEncriptPrincipal::DesencriptarString(guardada());
}

QString texto(const QString &chaveDoTexto, const QString &omissao) {
    return modTraducoes::texto(u"VISTREL_frmConfiguracoes"_s, chaveDoTexto, omissao);
}

bool emBranco(const QString &texto) {
    return QStringView(texto).trimmed().isEmpty();
}

} // namespace

namespace modPassWord {

QString pwdPorOmissao() {
    return u"A2E6FCEAD3079382F3E26CB9409A8327CFB85C6E1F22A5B5"_s;
}

bool PassWordCorrecta(const QString &digitada) {
    return !emBranco(digitada) && coincide(digitada);
}

Alteracao AlterarPassWord(const QString &actual, const QString &nova, const QString &confirmacao) {
    if (actual.isEmpty() || emBranco(nova) || confirmacao.isEmpty())
        return Alteracao::Incompleta;
    if (!coincide(actual))
        return Alteracao::PassWordInvalida;
    if (nova != confirmacao)
        return Alteracao::ConfirmacaoIncorrecta;
    if (nova.size() > maximoDeCaracteres)
        throw Falha(erros::chamadaInvalida,
                    texto(u"PassWordLonga"_s, u"A nova PassWord não pode ter mais de %1 caracteres."_s)
                        .arg(maximoDeCaracteres));
    const QString cifrada = modEncriptPrincipal::EncriptarString(nova);
    modINI::SaveSetting(estado().NomePrograma, seccao, chave, cifrada);
    // A write that fails says nothing; the user would be told of a change that did not happen.
    if (guardada() != cifrada)
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"PassWordNaoGuardada"_s, u"Não foi possível guardar a nova PassWord em \"%1\"."_s)
                        .arg(modINI::GetINIPATH() + estado().NomePrograma + u".ini"));
    return Alteracao::Alterada;
}

} // namespace modPassWord
