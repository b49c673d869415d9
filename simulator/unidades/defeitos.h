#pragma once

#include <QString>
#include <QStringView>

#include <bitset>
#include <optional>

// What a virtual unit can be told to do wrong.
namespace simulador {

enum class Defeito {
    Silencioso,
    Lento,
    WebCorta,
    WebGota,
    WebInfinito,
    WebLixo,
    WebEstado,
    WebReencaminha,
    WebPedacos,
    WebPedacosMaus,
    TamanhoMaior,
    TamanhoMenor,
    XmlCodificacao,
    XmlLatino,
    XmlSemElementos,
    Xml50Mb,
    XmlMetade,
    XmlEntidades,
    XmlCanal,
    XmlVazio,
    DataIso,
    LogVazio,
    LogMilhao,
    LogLixo,
    LogData,
    LogCorta,
    LogPara,
    LogContaMenos,
    LogContaMais,
    LogSoma,
    LogLinhaLonga,
    LogBinario,
    LogVersao,
    LogNaoFala,
    LogRecusa,
    ApagarRecusa,
    ApagarMudo,
    ApagarSobra,
    BuscaMuda,
    BuscaDupla,
    BuscaTardia,
    BuscaMalformada,
    BuscaGrande,
    BuscaInundacao,
    ConsolaMuda,
    ConsolaNega,
    ConsolaOpcoes,
    ConsolaFecha,
    Total
};

struct InfoDefeito {
    Defeito defeito;
    QStringView nome;
    QStringView descricao;
};

constexpr InfoDefeito tabelaDeDefeitos[] = {
    {Defeito::Silencioso, u"silencioso", u"aceita ligações e nunca responde"},
    {Defeito::Lento, u"lento", u"responde só depois do tempo de --atraso"},
    {Defeito::WebCorta, u"web-corta", u"corta a ligação a meio do documento"},
    {Defeito::WebGota, u"web-gota", u"envia o documento byte a byte"},
    {Defeito::WebInfinito, u"web-infinito", u"envia um documento sem fim"},
    {Defeito::WebLixo, u"web-lixo", u"responde com bytes que não são HTTP"},
    {Defeito::WebEstado, u"web-estado", u"responde com o estado 500"},
    {Defeito::WebReencaminha, u"web-reencaminha", u"reencaminha para outro endereço"},
    {Defeito::WebPedacos, u"web-pedacos", u"envia o documento em pedaços (não é defeito)"},
    {Defeito::WebPedacosMaus, u"web-pedacos-maus", u"envia pedaços com um tamanho ilegível"},
    {Defeito::TamanhoMaior, u"tamanho-maior", u"anuncia mais bytes do que envia"},
    {Defeito::TamanhoMenor, u"tamanho-menor", u"anuncia menos bytes do que envia"},
    {Defeito::XmlCodificacao, u"xml-codificacao", u"setup.xml noutra codificação do que declara"},
    {Defeito::XmlLatino, u"xml-latino", u"setup.xml em windows-1252, como declara (não é defeito)"},
    {Defeito::XmlSemElementos, u"xml-sem-elementos", u"setup.xml sem Network, Time, Agent nem SenSet"},
    {Defeito::Xml50Mb, u"xml-50mb", u"setup.xml com 50 MB de lixo"},
    {Defeito::XmlMetade, u"xml-metade", u"só a primeira metade de setup.xml"},
    {Defeito::XmlEntidades, u"xml-entidades", u"setup.xml com entidades que crescem sem fim"},
    {Defeito::XmlCanal, u"xml-canal", u"um canal sem limites em setup.xml"},
    {Defeito::XmlVazio, u"xml-vazio", u"setup.xml sem conteúdo"},
    {Defeito::DataIso, u"data-iso", u"data do relógio na forma AAAA-MM-DD"},
    {Defeito::LogVazio, u"log-vazio", u"log sem registos"},
    {Defeito::LogMilhao, u"log-milhao", u"log com um milhão de registos"},
    {Defeito::LogLixo, u"log-lixo", u"linhas de lixo entre os registos"},
    {Defeito::LogData, u"log-data", u"datas do log na forma DD.MM.AAAA"},
    {Defeito::LogCorta, u"log-corta", u"corta a ligação a meio do log"},
    {Defeito::LogPara, u"log-para", u"deixa de enviar a meio do log, sem fechar"},
    {Defeito::LogContaMenos, u"log-conta-menos", u"envia menos registos do que anuncia"},
    {Defeito::LogContaMais, u"log-conta-mais", u"envia mais registos do que anuncia"},
    {Defeito::LogSoma, u"log-soma", u"soma de controlo errada"},
    {Defeito::LogLinhaLonga, u"log-linha-longa", u"um registo sem fim"},
    {Defeito::LogBinario, u"log-binario", u"bytes a zero dentro de um registo"},
    {Defeito::LogVersao, u"log-versao", u"fala só outra versão do protocolo do log"},
    {Defeito::LogNaoFala, u"log-nao-fala", u"não conhece o protocolo do log"},
    {Defeito::LogRecusa, u"log-recusa", u"diz que está ocupado"},
    {Defeito::ApagarRecusa, u"apagar-recusa", u"recusa apagar a memória"},
    {Defeito::ApagarMudo, u"apagar-mudo", u"nunca confirma que apagou"},
    {Defeito::ApagarSobra, u"apagar-sobra", u"confirma, mas a memória não fica vazia"},
    {Defeito::BuscaMuda, u"busca-muda", u"não responde à pesquisa"},
    {Defeito::BuscaDupla, u"busca-dupla", u"responde três vezes a cada pesquisa"},
    {Defeito::BuscaTardia, u"busca-tardia", u"responde à pesquisa depois do tempo de --atraso"},
    {Defeito::BuscaMalformada, u"busca-malformada", u"respostas malformadas à pesquisa"},
    {Defeito::BuscaGrande, u"busca-grande", u"respostas demasiado grandes à pesquisa"},
    {Defeito::BuscaInundacao, u"busca-inundacao", u"milhares de respostas à pesquisa"},
    {Defeito::ConsolaMuda, u"consola-muda", u"a consola não responde"},
    {Defeito::ConsolaNega, u"consola-nega", u"a consola nunca confirma com OK"},
    {Defeito::ConsolaOpcoes, u"consola-opcoes", u"opções telnet entre o texto da consola (não é defeito)"},
    {Defeito::ConsolaFecha, u"consola-fecha", u"a consola fecha a ligação logo que é aberta"},
};
static_assert(std::size(tabelaDeDefeitos) == size_t(Defeito::Total));

class Defeitos {
public:
    Defeitos() = default;
    Defeitos(std::initializer_list<Defeito> lista) {
        for (const Defeito d : lista)
            ligar(d);
    }
    void ligar(Defeito d) { m_bits.set(size_t(d)); }
    bool tem(Defeito d) const { return m_bits.test(size_t(d)); }

private:
    std::bitset<size_t(Defeito::Total)> m_bits;
};

inline std::optional<Defeito> defeitoDe(QStringView nome) {
    for (const InfoDefeito &info : tabelaDeDefeitos) {
        if (info.nome.compare(nome, Qt::CaseInsensitive) == 0)
            return info.defeito;
    }
    return std::nullopt;
}

} // namespace simulador
