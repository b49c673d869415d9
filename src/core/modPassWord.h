#pragma once

#include <QString>

// The one password of the installation, stored enciphered in the settings.
namespace modPassWord {

// A longer one would not fit into the characters that a settings value is read back with.
constexpr int maximoDeCaracteres = 124;

// The stored form of the factory password, in force until another one is stored.
QString pwdPorOmissao();

// Exact and case-sensitive. False for a blank text and whenever the stored value is damaged; Falha when the settings
// file is damaged as a whole.
bool PassWordCorrecta(const QString &digitada);

enum class Alteracao {
    Incompleta,            // a field is not filled: nothing happens
    PassWordInvalida,      // Message1
    ConfirmacaoIncorrecta, // Message2
    Alterada               // Message3
};
// Falha when the new password is too long or could not be stored; the old one then stays in force. A new password
// of blanks counts as not filled: it could never be typed in the password dialog.
Alteracao AlterarPassWord(const QString &actual, const QString &nova, const QString &confirmacao);

} // namespace modPassWord
