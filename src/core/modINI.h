#pragma once

#include <QList>
#include <QString>

// The settings store. Every read goes to the file (a parsed copy is reused only while the file is unchanged),
// every write goes to the file at once, by atomic replacement.
namespace modINI {

constexpr int maximoDeCaracteres = 512; // a read gives no more than this

// <file> is a base name without folder and extension, below the settings folder.
QString GetSetting(const QString &ficheiro, const QString &seccao, const QString &chave, const QString &omissao = {});
// False when it is not stored; the file is then as it was.
bool SaveSetting(const QString &ficheiro, const QString &seccao, const QString &chave, const QString &valor);
// Several keys in one replacement of the file, in this order.
struct Definicao {
    QString seccao, chave, valor;
};
bool SaveSettings(const QString &ficheiro, const QList<Definicao> &valores);
// The same for whoever says afterwards that it is stored: Falha with the file and the cause.
void Guardar(const QString &ficheiro, const QList<Definicao> &valores);

// Not a pair, on purpose: the first reads Kelvark.ini beside the program, the second writes Vistrel.ini there.
QString GetSettingINIPATH(const QString &seccao, const QString &chave, const QString &omissao = {});
bool SaveSettingINIPATH(const QString &seccao, const QString &chave, const QString &valor);
void GuardarINIPATH(const QString &seccao, const QString &chave, const QString &valor); // Falha when not stored

// A file that is there, but cannot be read or has not one section: what it held is lost. The first write to such a main
// file notes that of the password, so that its loss is not taken for a new installation later on.
bool danificado(const QString &caminho);
constexpr QStringView valorPerdido = u"?";

// The settings folder, with its trailing separator.
QString GetINIPATH();

// The one low-level read.
QString LerValorINI(const QString &seccao, const QString &chave, const QString &omissao, const QString &caminho);

} // namespace modINI
