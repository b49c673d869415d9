#include "shell/textosDoQt.h"

#include "core/literais.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <array>

namespace {

// Most codes are a language's own; these name a country, or have no texts under their plain name.
struct Nomes {
    QStringView codigo;
    std::array<QStringView, 2> nomes;
};
constexpr Nomes excepcoes[] = {
    {u"PT", {u"pt_PT", u"pt_BR"}},
    {u"BR", {u"pt_BR"}},
    {u"CZ", {u"cs"}},
    {u"GB", {u"en"}},
    {u"US", {u"en"}},
    {u"DK", {u"da"}},
    {u"GR", {u"el"}},
    {u"SE", {u"sv"}},
    {u"CN", {u"zh_CN"}},
};

QStringList nomesDe(const QString &lingua) {
    for (const Nomes &linha : excepcoes)
        if (lingua.compare(linha.codigo, Qt::CaseInsensitive) == 0)
            return {linha.nomes[0].toString(), linha.nomes[1].toString()};
    return {lingua.toLower()};
}

} // namespace

namespace textosDoQt {

void aplicar(const QString &lingua) {
    const QString nome = u"textosDoQt"_s;
    delete qApp->findChild<QTranslator *>(nome, Qt::FindDirectChildrenOnly);
    auto *tradutor = new QTranslator(qApp);
    tradutor->setObjectName(nome);
    const QString pasta = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    for (const QString &candidato : nomesDe(lingua))
        if (!candidato.isEmpty() && tradutor->load(u"qtbase_"_s + candidato, pasta)) {
            QCoreApplication::installTranslator(tradutor);
            return;
        }
    delete tradutor; // Qt's own English stands
}

} // namespace textosDoQt
