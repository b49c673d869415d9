#pragma once

#include <QList>
#include <QString>

// The settings store. Every read goes to the file (a parsed copy is reused only while the file is unchanged),
// every write goes to the file at once, by atomic replacement.
namespace modINI {

constexpr int maximoDeCaracteres = 512; // a read gives no more than this

// <file> is a base name without folder and extension, below the settings folder.
QString GetSetting(const QString &ficheiro, const QString &seccao, const QString &chave, const QString &omissao = {});
bool SaveSetting(const QString &ficheiro, const QString &seccao, const QString &chave, const QString &valor);
// Several keys in one replacement of the file, in this order.
struct Definicao {
    QString seccao, chave, valor;
};
bool SaveSettings(const QString &ficheiro, const QList<Definicao> &valores);

// Not a pair, on purpose: the first reads Kelvark.ini beside the program, the second writes Vistrel.ini there.
QString GetSettingINIPATH(const QString &seccao, const QString &chave, const QString &omissao = {});
bool SaveSettingINIPATH(const QString &seccao, const QString &chave, const QString &valor);

// The settings folder, with its trailing separator.
QString GetINIPATH();

// The one low-level read.
QString LerValorINI(const QString &seccao, const QString &chave, const QString &omissao, const QString &caminho);

} // namespace modINI
