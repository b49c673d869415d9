#include "views/exportacao.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "views/estados.h"
#include "views/ilegiveis.h"

#include <array>
#include <cmath>
#include <cstring>

namespace {

// Dates in the locale's form are slow to make, and a file repeats a few hundred times of day over and over.
class TextosDeDatas {
public:
    const QByteArray &data(double segundos) {
        const auto dia = qint64(std::floor(segundos / 86400));
        if (dia != m_dia) {
            m_dia = dia;
            m_textoDia = datas::textoData(datas::instanteDe(double(dia) * 86400).date()).toUtf8();
        }
        return m_textoDia;
    }
    const QByteArray &hora(double segundos) {
        const int s = int(qint64(segundos) - m_dia * 86400);
        QByteArray &texto = m_horas[s];
        if (texto.isEmpty())
            texto = datas::textoHora(QTime::fromMSecsSinceStartOfDay(s * 1000)).toUtf8();
        return texto;
    }

private:
    qint64 m_dia = std::numeric_limits<qint64>::min();
    QByteArray m_textoDia;
    QHash<int, QByteArray> m_horas;
};

// Measured values repeat as well: a small cache by bit pattern spares most conversions.
class TextosDeNumeros {
public:
    const QByteArray &texto(double numero) {
        quint64 bits = 0;
        std::memcpy(&bits, &numero, sizeof bits);
        Entrada &e = m_entradas[(bits * 0x9E3779B97F4A7C15ULL) >> 52];
        if (e.texto.isEmpty() || e.bits != bits)
            e = {bits, modDoubleTratamento::NumeroParaTexto(numero).toUtf8()};
        return e.texto;
    }

private:
    struct Entrada {
        quint64 bits = 0;
        QByteArray texto;
    };
    std::array<Entrada, 4096> m_entradas;
};

class EscritorCSV {
public:
    explicit EscritorCSV(const QString &caminho) : m_ficheiro(caminho) {
        if (!m_ficheiro.abrir())
            falhar();
        m_tampao.reserve(tamanhoDoTampao + 4096);
    }
    EscritorCSV(const EscritorCSV &) = delete;
    EscritorCSV &operator=(const EscritorCSV &) = delete;

    void juntar(QByteArrayView texto) { m_tampao.append(texto); }
    void fimDeLinha() {
        m_tampao.append("\r\n");
        if (m_tampao.size() >= tamanhoDoTampao)
            despejar();
    }
    void terminar(const std::function<void()> &passar) {
        despejar();
        if (!m_ficheiro.concluir(passar))
            falhar();
    }

private:
    static constexpr qsizetype tamanhoDoTampao = 256 * 1024;
    void despejar() {
        if (m_ficheiro.write(m_tampao) != m_tampao.size())
            falhar();
        m_tampao.resize(0);
    }
    [[noreturn]] void falhar() {
        throw Falha(
            erros::falhaDoFicheiro,
            modTraducoes::texto(u"KelvarkAUX"_s, u"FicheiroNaoEscrito"_s,
                                u"Não é possível escrever \"%1\": %2. O ficheiro que lá estivesse ficou como estava."_s)
                .arg(m_ficheiro.destino(), m_ficheiro.errorString()));
    }
    FicheiroInteiro m_ficheiro;
    QByteArray m_tampao;
};

QByteArrayView bytesDe(const Recordset &rs, int coluna) {
    int tamanho = 0;
    const char *bytes = rs.utf8(coluna, tamanho);
    return {bytes, tamanho};
}

class Linhas {
public:
    Linhas(EscritorCSV &escritor, std::span<const exportacao::ColunaCSV> colunas)
        : m_escritor(escritor), m_colunas(colunas) {}

    // The column whose value cannot be read: its row is none. -1: all can.
    int ilegivel(const Recordset &rs) const {
        for (int i = 0; i < int(m_colunas.size()); ++i)
            if (m_colunas[size_t(i)].forma == exportacao::FormaCSV::Numero && !valorDe(rs, i))
                return i;
        return -1;
    }
    // False when a limit could not be read: it is written as none.
    bool escrever(const Recordset &rs) {
        m_limiteIlegivel = false;
        for (int i = 0; i < int(m_colunas.size()); ++i) {
            if (i > 0)
                m_escritor.juntar(";");
            escreverCampo(rs, i);
        }
        m_escritor.fimDeLinha();
        return !m_limiteIlegivel;
    }

private:
    void escreverCampo(const Recordset &rs, int i) {
        switch (m_colunas[size_t(i)].forma) {
        case exportacao::FormaCSV::Texto:
            return m_escritor.juntar(bytesDe(rs, i));
        case exportacao::FormaCSV::Data:
            return escreverData(rs, i);
        case exportacao::FormaCSV::Numero:
            if (rs.nulo(i) || (!rs.eNumero(i) && std::isnan(rs.numero(i))))
                return m_escritor.juntar(bytesDe(rs, i));
            return m_escritor.juntar(m_numeros.texto(rs.numero(i)));
        case exportacao::FormaCSV::Limites: {
            const QByteArrayView guardados = bytesDe(rs, i);
            const Limites &limites = m_limites.de(guardados.data(), int(guardados.size()));
            m_limiteIlegivel = limites.ilegivel;
            escreverLimite(limites.maximo);
            m_escritor.juntar(";");
            return escreverLimite(limites.minimo);
        }
        case exportacao::FormaCSV::Estado:
            return m_escritor.juntar(estados::ligado(bytesDe(rs, i)) ? "1" : "0");
        }
    }
    void escreverData(const Recordset &rs, int i) {
        const double segundos = rs.segundos(i);
        if (std::isnan(segundos))
            return m_escritor.juntar(bytesDe(rs, i));
        m_escritor.juntar(m_datas.data(segundos));
        m_escritor.juntar(" ");
        m_escritor.juntar(m_datas.hora(segundos));
    }
    void escreverLimite(double limite) {
        m_escritor.juntar(std::isnan(limite) ? QByteArrayView("NA") : QByteArrayView(m_numeros.texto(limite)));
    }
    EscritorCSV &m_escritor;
    std::span<const exportacao::ColunaCSV> m_colunas;
    TextosDeDatas m_datas;
    TextosDeNumeros m_numeros;
    CacheLimites m_limites;
    bool m_limiteIlegivel = false;
};

} // namespace

namespace exportacao {

namespace {

QString ordemDe(OrdemCSV ordem) {
    switch (ordem) {
    case OrdemCSV::Data:
        return u"Data, "_s + dialecto::ordem;
    case OrdemCSV::DoFim:
        return u"Data DESC"_s;
    case OrdemCSV::Escrita:
        break;
    }
    return dialecto::ordem.toString();
}

int posicaoDe(const FormatoCSV &formato, FormaCSV forma) {
    for (size_t i = 0; i < formato.colunas.size(); ++i)
        if (formato.colunas[i].forma == forma)
            return int(i);
    return -1;
}

// Without a column of its own it is the limits.
void dizerIlegivel(const PedidoCSV &pedido, const FormatoCSV &formato, const QStringList &chave, const Recordset &rs,
                   int coluna) {
    const int data = posicaoDe(formato, FormaCSV::Data);
    if (pedido.ilegiveis)
        pedido.ilegiveis->juntar(pedido.tabela.nome, Escolha{chave, {}}.textoDaChave(),
                                 data < 0 ? QString() : rs.texto(data),
                                 rs.texto(coluna < 0 ? posicaoDe(formato, FormaCSV::Limites) : coluna));
}

} // namespace

qint64 escreverCSV(const PedidoCSV &pedido, const std::function<void()> &passar) {
    EscritorCSV escritor(pedido.caminho);
    const TabelaLeituras &t = pedido.tabela;
    const ColunaCSV deLeituras[] = {{t.data, FormaCSV::Data},
                                    {u"Sensor", FormaCSV::Texto},
                                    {u"NomeSensor", FormaCSV::Texto},
                                    {t.valor, FormaCSV::Numero},
                                    {t.limites, FormaCSV::Limites}};
    const FormatoCSV formato = pedido.formato ? *pedido.formato : FormatoCSV{deLeituras};
    const auto linhas = std::make_unique<Linhas>(escritor, formato.colunas);
    QStringList colunas;
    for (const ColunaCSV &coluna : formato.colunas)
        colunas.append(coluna.coluna.toString());
    const QString sql = u"SELECT "_s + colunas.join(u", "_s) + u" FROM " + t.nome + u" WHERE " + t.data +
                        u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave) + u" ORDER BY " + ordemDe(formato.ordem);
    qint64 escritas = 0;
    for (const QStringList &chave : pedido.chaves) {
        Recordset rs = cnBD().consultar(sql, QVariantList{pedido.intervalo.inicio, pedido.intervalo.fim} +
                                                 escolhas::valores(chave));
        while (rs.avancar()) {
            const int mau = linhas->ilegivel(rs);
            if (mau < 0 && linhas->escrever(rs))
                ++escritas;
            else
                dizerIlegivel(pedido, formato, chave, rs, mau);
            passar();
        }
    }
    if (escritas > 0)
        escritor.terminar(passar);
    return escritas;
}

} // namespace exportacao
