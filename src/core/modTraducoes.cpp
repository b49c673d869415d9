#include "core/modTraducoes.h"

#include "core/estado.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "core/rotina.h"

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

} // namespace

namespace modTraducoes {

QString GetSettingsLingua(const QString &lingua, const QString & /*ficheiro*/, const QString &seccao,
                          const QString &chave, const QString &omissao) {
    return Rotina("modTraducoes.GetSettingsLingua", [&] {
        return modINI::LerValorINI(seccao, chave, omissao, modINI::GetINIPATH() + u"Kelvark-" + lingua + u".ini");
    });
}

QString CarregarLingua(const QString &chave, const QString &seccao, const QString &omissao, const QString &lingua) {
    return Rotina("modTraducoes.CarregarLingua", [&] {
        if (const auto &pedido = estado().ambiente.textoPedido)
            pedido(seccao, chave, omissao);
        const QString lido = GetSettingsLingua(lingua, u"Kelvark"_s, seccao, chave, omissao);
        return lido.isEmpty() ? omissao : lido;
    });
}

QString linguaDasDefinicoes() {
    const QString seccao = u"Lingua"_s;
    const QString &ficheiro = estado().NomePrograma;
    const QString activa = modINI::GetSetting(ficheiro, seccao, u"ACT"_s);
    const QString codigo = modINI::GetSetting(ficheiro, seccao, u'L' + activa);
    return codigo.isEmpty() ? u"PT"_s : codigo;
}

QStringList nomesDaLingua(const QString &codigo) {
    for (const Nomes &linha : excepcoes)
        if (codigo.compare(linha.codigo, Qt::CaseInsensitive) == 0) {
            QStringList nomes{linha.nomes[0].toString(), linha.nomes[1].toString()};
            nomes.removeAll(QString());
            return nomes;
        }
    return {codigo.toLower()};
}

QLocale localeDosNomes() {
    const QLocale &sistema = estado().ambiente.locale;
    QLocale lingua(nomesDaLingua(estado().Lingua).constFirst());
    if (lingua.language() == QLocale::C) // a language that nobody knows shows the program's own texts
        lingua = QLocale(u"pt_PT"_s);
    return lingua.language() == sistema.language() ? sistema : lingua;
}

QString texto(const QString &seccao, const QString &chave, const QString &omissao) {
    return CarregarLingua(chave, seccao, omissao, estado().Lingua);
}

QString seccaoDe(const QString &form) {
    return u"VISTREL_" + form;
}

} // namespace modTraducoes
