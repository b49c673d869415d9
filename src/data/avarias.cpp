#include "data/avarias.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"

namespace {

struct Explicacao {
    Avaria avaria;
    QStringView chave;
    QStringView omissao;
};
constexpr Explicacao explicacoes[] = {
    {Avaria::Ocupada, u"BDOcupada", u"A base de dados está bloqueada por outro programa"},
    {Avaria::OcupadaAqui, u"BDOcupadaAqui", u"A base de dados está bloqueada por outra consulta"},
    {Avaria::SoLeitura, u"BDSoLeitura", u"A base de dados só pode ser lida"},
    {Avaria::DiscoCheio, u"BDDiscoCheio", u"Não há espaço no disco da base de dados"},
    {Avaria::Disco, u"BDDisco", u"Falha de leitura ou escrita no disco da base de dados"},
    {Avaria::NaoAbriu, u"BDNaoAbriu", u"Não é possível abrir a base de dados"},
    {Avaria::SemPermissao, u"BDSemPermissao", u"Sem permissão de acesso à base de dados"},
    {Avaria::Regra, u"BDRegra", u"O registo não respeita as regras da tabela"},
    {Avaria::Danificada, u"BDDanificada", u"A base de dados está danificada"},
};

QString traduzido(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

} // namespace

namespace avarias {

QString texto(Avaria avaria) {
    for (const Explicacao &e : explicacoes)
        if (e.avaria == avaria)
            return traduzido(e.chave.toString(), e.omissao.toString());
    return traduzido(u"BDRecusou"_s, u"A base de dados recusou o pedido"_s);
}

QString textoDeTrocada(const QString &caminho) {
    return traduzido(u"BDTrocada"_s,
                     u"O ficheiro da base de dados \"%1\" foi apagado ou substituído enquanto estava aberto. O "
                     "que se vê é do anterior, e o que se alterar não fica gravado. Feche as janelas e abra "
                     "a base de dados de novo em \"Configurações\"."_s)
        .arg(caminho);
}

void falharFechada() {
    throw Falha(erros::objectoFechado, traduzido(u"BDFechada"_s, u"A base de dados não está aberta."_s));
}

void falharAnulada() {
    throw Falha(erros::falhaDoFicheiro,
                traduzido(u"BDAnulada"_s, u"A alteração foi anulada pela base de dados; nada foi gravado."_s));
}

void falharEmPasso() {
    throw Falha(erros::falhaDoFicheiro,
                traduzido(u"BDEmPasso"_s, u"Estão a ser guardados outros dados, e esta alteração não foi gravada. "
                                          "Repita-a quando esse trabalho terminar."_s));
}

} // namespace avarias
