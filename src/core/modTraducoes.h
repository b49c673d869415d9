#pragma once

#include <QLocale>
#include <QStringList>

// Texts of the interface. The Portuguese default stands until a language file replaces it, key by key.
namespace modTraducoes {

QString CarregarLingua(const QString &chave, const QString &seccao, const QString &omissao, const QString &lingua);
// The second argument is unused: the prefix "Kelvark-" is fixed.
QString GetSettingsLingua(const QString &lingua, const QString &ficheiro, const QString &seccao, const QString &chave,
                          const QString &omissao);

// The language in force by the settings: key "L" + ACT of section Lingua, else "PT".
QString linguaDasDefinicoes();

// What the world calls a language of the program, best first: "CZ" -> {"cs"}, "PT" -> {"pt_PT", "pt_BR"}.
QStringList nomesDaLingua(const QString &codigo);

// The names of months and days, and the order of the week: the system's where it speaks the language in force, else
// that language's. Everything else that is written keeps the system's form.
QLocale localeDosNomes();

// The usual form of the call: the language in force.
QString texto(const QString &seccao, const QString &chave, const QString &omissao);

// A form's own section.
QString seccaoDe(const QString &form);

} // namespace modTraducoes
