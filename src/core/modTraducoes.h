#pragma once

#include <QString>

// Texts of the interface. The Portuguese default stands until a language file replaces it, key by key.
namespace modTraducoes {

QString CarregarLingua(const QString &chave, const QString &seccao, const QString &omissao, const QString &lingua);
// The second argument is unused: the prefix "Kelvark-" is fixed.
QString GetSettingsLingua(const QString &lingua, const QString &ficheiro, const QString &seccao, const QString &chave,
                          const QString &omissao);

// The language in force by the settings: key "L" + ACT of section Lingua, else "PT".
QString linguaDasDefinicoes();

// The usual form of the call: the language in force.
QString texto(const QString &seccao, const QString &chave, const QString &omissao);

// A form's own section.
QString seccaoDe(const QString &form);

} // namespace modTraducoes
