#include "core/modTraducoes.h"

#include "core/estado.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "core/rotina.h"

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

QString texto(const QString &seccao, const QString &chave, const QString &omissao) {
    return CarregarLingua(chave, seccao, omissao, estado().Lingua);
}

QString seccaoDe(const QString &form) {
    return u"VISTREL_" + form;
}

} // namespace modTraducoes
