#pragma once

#include "core/literais.h"
#include "core/modTraducoes.h"

// Texts of the work with units, and what they go with.
namespace mensagens2251 {

struct Mensagem {
    QStringView chave;
    QStringView omissao;
    QString texto() const { return modTraducoes::texto(u"frmDescarregar2251"_s, chave.toString(), omissao.toString()); }
    QString texto(const QString &pormenor) const { return QString(texto() + u": "_s + pormenor); }
};

// A setup.xml that changes nothing.
constexpr Mensagem xmlVazio{u"XmlVazio", u"O dispositivo não enviou setup.xml"};
constexpr Mensagem xmlGrande{u"XmlGrande", u"O setup.xml é demasiado grande"};
constexpr Mensagem xmlCodificacao{u"XmlCodificacao", u"O setup.xml não está na codificação que declara"};
constexpr Mensagem xmlMalFormado{u"XmlMalFormado", u"O setup.xml está incompleto ou malformado"};
constexpr Mensagem xmlEntidades{u"XmlEntidades", u"O setup.xml define um tipo de documento e foi recusado"};
constexpr Mensagem xmlEstrutura{u"Desc8", u"Estrutura do XML inválida"};
// A setup.xml that could not be followed in everything.
constexpr Mensagem sensorAlheio{u"SensorAlheio", u"O identificador do sensor já pertence a outro dispositivo"};
constexpr Mensagem canaisDeFora{u"CanaisDeFora", u"Canais de %1 que não foram importados: %2"};
constexpr Mensagem canalSemElemento{u"CanalSemElemento", u"falta %1"};
constexpr Mensagem canalIlegivel{u"CanalIlegivel", u"%1 ilegível: \"%2\""};
constexpr Mensagem eMais{u"EMais", u"e mais %1"};

// Data that a log's line stumbles over: the line fails, the log goes on.
constexpr Mensagem calibracaoIlegivel{u"CalibracaoIlegivel", u"Calibração ilegível do sensor"};
constexpr Mensagem foraDosLimites{u"ForaDosLimites", u"Valor fora dos limites dos números"};
constexpr Mensagem demasiadosSensores{u"DemasiadosSensores", u"Demasiados sensores no dispositivo"};

constexpr Mensagem linhaCurta{u"LinhaCurta", u"Linha incompleta"};
constexpr Mensagem dataIlegivel{u"DataIlegivel", u"Data ilegível"};
constexpr Mensagem valorIlegivel{u"ValorIlegivel", u"Valor ilegível"};
constexpr Mensagem semValor{u"SemValor", u"Canal sem valor"};
constexpr Mensagem alemDaContagem{u"AlemDaContagem", u"Número além da contagem da linha"};

// A file of replaced readings.
constexpr Mensagem substituidasNaoAbre{u"SubstNaoAbre", u"Não é possível abrir o ficheiro"};
constexpr Mensagem substituidasOutra{u"SubstOutra", u"O ficheiro não é de leituras substituídas"};
constexpr Mensagem substituidasEstragado{u"SubstEstragado",
                                         u"O ficheiro está danificado ou é de outra base; nada foi reposto"};

// Icons of a row of the list, by the state of its download.
constexpr int iconeDoEstado(int estado) {
    constexpr int icones[] = {7, 11, 10, 9, 8, 12};
    return estado >= 1 && estado <= 5 ? icones[estado] : 7;
}
enum EstadoDaLinha { parada = 0, aEspera = 1, emCurso = 2, comFalha = 3, comSucesso = 4, relogioDiferente = 5 };

// How a download ends.
constexpr Mensagem inicio{u"Desc1", u"Erro ao iniciar a transferência"};
constexpr Mensagem recepcao{u"Desc2", u"Erro na recepção de dados"};
constexpr Mensagem sucesso{u"Desc3", u"Dados tranferidos com sucesso"};
constexpr Mensagem naoLidas{u"DescNaoLidas", u"%1 linhas não lidas; o resto foi guardado"};
constexpr Mensagem baseDeDados{u"Desc4", u"Erro de Base de Dados"};
constexpr Mensagem conversao{u"Desc5", u"Dados convertidos incorrectamente"};
constexpr Mensagem principal{u"Desc10", u"Erro na função principal de transferência"};
constexpr Mensagem semRegistos{u"Err1", u"O log está vazio ou ocorreu um erro na conversão de dados"};

// What the row says of the unit's clock, by the result of the comparison; 1 means that it is right, and says nothing.
struct Relogio {
    int resultado;
    Mensagem mensagem;
    EstadoDaLinha estado;
};
constexpr Relogio relogios[] = {
    {0, {u"Desc7", u"Data/Hora não sincronizada"}, relogioDiferente},
    {-2, xmlEstrutura, comFalha},
    {-3, {u"Desc6", u"Erro ao verificação da data/hora"}, comFalha},
};
constexpr Mensagem horaDoDispositivo{u"HoraDispositivo", u"Data/hora do dispositivo"};
constexpr Relogio relogioDesconhecido{-1, {u"Desc9", u"Erro desconhecido"}, comFalha};
constexpr Relogio relogio(int resultado) {
    for (const Relogio &r : relogios)
        if (r.resultado == resultado)
            return r;
    return relogioDesconhecido;
}

// By the code of the transfer's failure.
constexpr Mensagem errosDoLog[] = {
    {u"Err2", u"Erro no dispositivo"},
    {u"Err2", u"Erro no dispositivo"},
    {u"Err2", u"Erro no dispositivo"},
    {u"Err4", u"Erro ao descarregar o ficheiro BIN"},
    {u"Err7", u"Erro ao escrever no ficheiro"},
    {u"Err5", u"Erro ao apagar"},
    {u"Err6", u"Erro ao limpar a memória"},
    {u"Err3", u"Erro na ligação"},
    {u"Err8", u"Erro ao converter o ficheiro BIN em CSV"},
};
// Empty for any other code.
inline QString erroDoLog(int codigo, const QString &texto) {
    const bool conhecido = codigo >= 0 && codigo < int(std::size(errosDoLog));
    return conhecido ? errosDoLog[codigo].texto(texto) : QString();
}

} // namespace mensagens2251
