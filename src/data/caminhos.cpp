#include "data/modMain.h"

#include "core/estado.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "core/rotina.h"

#include <QDir>
#include <QFileInfo>

namespace {

bool eSeparador(QChar c) {
    return c == u'/' || c == u'\\';
}

// The setting with a leading "." replaced by the program's folder. Settings written with "\" are understood where
// they can be meant as separators: behind that ".", and at the end.
QString pastaDeExportacao() {
    QString pasta = modINI::GetSetting(estado().NomePrograma, u"JPG"_s, u"MAIN"_s);
    if (pasta.startsWith(u'.')) {
        pasta.replace(u'\\', u'/');
        if (pasta == u".." || pasta.startsWith(u"../"))
            pasta.prepend(u"./"); // the folder above stays the folder above
        pasta.replace(0, 1, estado().PastaPrograma);
    }
    if (QStringView(pasta).trimmed().isEmpty())
        return estado().PastaPrograma + u"/JPG/";
    if (pasta.endsWith(u'\\'))
        pasta.chop(1);
    return pasta.endsWith(u'/') ? pasta : pasta + u'/';
}

QString comHora(const QString &nome, QStringView extensao) {
    return nome + estado().ambiente.agora().toString(u"HH-mm-ss") + extensao;
}

} // namespace

namespace modMain {

QString CriarCaminhoJPG() {
    return Rotina("modMain.CriarCaminhoJPG", [] {
        const QDate hoje = estado().ambiente.agora().date();
        const QString pasta = pastaDeExportacao() + u"%1/%2/%3"_s.arg(hoje.year()).arg(hoje.month()).arg(hoje.day());
        CriarPastas(pasta);
        return pasta;
    });
}

QString CriarCaminhoJPG(const QString &base) {
    return CriarCaminhoJPG() + u'/' + TratarNomeFicheiroJPG(base);
}

QString CriarCaminhoCSV(const QString &base) {
    return CriarCaminhoJPG() + u'/' + TratarNomeFicheiroCSV(base);
}

QString TratarNomeFicheiroJPG(const QString &nome) {
    return comHora(nome, u".jpg");
}

QString TratarNomeFicheiroCSV(const QString &nome) {
    return comHora(nome, u".csv");
}

bool CriarPastas(const QString &caminho) {
    qsizetype separador = caminho.size() - 1;
    while (separador >= 0 && !eSeparador(caminho[separador]))
        --separador;
    if (separador < 0)
        return false;
    const QString acima = separador == 0 ? u"/"_s : caminho.left(separador);
    if (!QFileInfo::exists(acima))
        CriarPastas(acima);
    return QDir().mkdir(caminho);
}

} // namespace modMain
