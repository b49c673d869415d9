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

QString texto(const QString &chaveDoTexto, const QString &omissao) {
    return modTraducoes::texto(u"VISTREL_frmConfiguracoes"_s, chaveDoTexto, omissao);
}

QString guardada() {
    return modINI::GetSetting(estado().NomePrograma, seccao, chave, modPassWord::pwdPorOmissao());
}

// Without an entry the factory password is in force. A file that is there and says nothing, or that cannot be read, has
// lost the entry that it may have had: its password is not known, and the factory's would open what was closed.
void exigirConhecida() {
    const QString ficheiro = modINI::GetINIPATH() + estado().NomePrograma + u".ini";
    if (guardada() == modINI::valorPerdido ||
        (guardada() == modPassWord::pwdPorOmissao() && modINI::danificado(ficheiro)))
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"PassWordDesconhecida"_s,
                          u"O ficheiro de definições \"%1\" foi danificado ou não pode ser lido, e a PassWord com "
                          "ele. Reponha-o de uma cópia; se for apagado, volta a valer a PassWord de fábrica."_s)
                        .arg(ficheiro));
}

bool coincide(const QString &digitada) {
    exigirConhecida();
    return !digitada.isEmpty() && digitada == modEncriptPrincipal::DesencriptarString(guardada());
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
    modINI::Guardar(estado().NomePrograma, {{seccao, chave, cifrada}});
    return Alteracao::Alterada;
}

} // namespace modPassWord
