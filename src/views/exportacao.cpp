#include "views/exportacao.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <QFile>

#include <array>
#include <cmath>
#include <cstring>

namespace {

enum Coluna { colData, colSensor, colNome, colValor, colObservacoes };

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
        if (!m_ficheiro.open(QIODevice::WriteOnly | QIODevice::Truncate))
            falhar();
        m_tampao.reserve(tamanhoDoTampao + 4096);
    }
    ~EscritorCSV() {
        if (!m_falhou && m_ficheiro.isOpen())
            m_ficheiro.write(m_tampao); // the lines so far stay in the file
    }
    EscritorCSV(const EscritorCSV &) = delete;
    EscritorCSV &operator=(const EscritorCSV &) = delete;

    void juntar(QByteArrayView texto) { m_tampao.append(texto); }
    void fimDeLinha() {
        m_tampao.append("\r\n");
        ++m_linhas;
        if (m_tampao.size() >= tamanhoDoTampao)
            despejar();
    }
    void terminar() {
        despejar();
        if (!m_ficheiro.flush())
            falhar();
        m_ficheiro.close();
        if (m_ficheiro.error() != QFileDevice::NoError)
            falhar();
    }

private:
    static constexpr qsizetype tamanhoDoTampao = 256 * 1024;
    void despejar() {
        if (m_ficheiro.write(m_tampao) != m_tampao.size() || !m_ficheiro.flush())
            falhar();
        m_tampao.resize(0);
    }
    [[noreturn]] void falhar() {
        m_falhou = true;
        throw Falha(erros::falhaDoFicheiro, u"Não é possível escrever \"%1\": %2 (linhas preparadas: %3)."_s
                                                .arg(m_ficheiro.fileName(), m_ficheiro.errorString())
                                                .arg(m_linhas));
    }
    QFile m_ficheiro;
    QByteArray m_tampao;
    qint64 m_linhas = 0;
    bool m_falhou = false;
};

QByteArrayView bytesDe(const Recordset &rs, int coluna) {
    int tamanho = 0;
    const char *bytes = rs.utf8(coluna, tamanho);
    return {bytes, tamanho};
}

class Linhas {
public:
    explicit Linhas(EscritorCSV &escritor) : m_escritor(escritor) {}

    void escrever(const Recordset &rs) {
        if (const double segundos = rs.segundos(colData); std::isnan(segundos)) {
            m_escritor.juntar(bytesDe(rs, colData));
        } else {
            m_escritor.juntar(m_datas.data(segundos));
            m_escritor.juntar(" ");
            m_escritor.juntar(m_datas.hora(segundos));
        }
        m_escritor.juntar(";");
        m_escritor.juntar(bytesDe(rs, colSensor));
        m_escritor.juntar(";");
        m_escritor.juntar(bytesDe(rs, colNome));
        m_escritor.juntar(";");
        if (rs.nulo(colValor) || (!rs.eNumero(colValor) && std::isnan(rs.numero(colValor))))
            m_escritor.juntar(bytesDe(rs, colValor)); // "ND" goes as it is
        else
            m_escritor.juntar(m_numeros.texto(rs.numero(colValor)));
        const QByteArrayView observacoes = bytesDe(rs, colObservacoes);
        const Limites &limites = m_limites.de(observacoes.data(), int(observacoes.size()));
        juntarLimite(limites.maximo);
        juntarLimite(limites.minimo);
        m_escritor.fimDeLinha();
    }

private:
    void juntarLimite(double limite) {
        m_escritor.juntar(";");
        m_escritor.juntar(std::isnan(limite) ? QByteArrayView("NA") : QByteArrayView(m_numeros.texto(limite)));
    }
    EscritorCSV &m_escritor;
    TextosDeDatas m_datas;
    TextosDeNumeros m_numeros;
    CacheLimites m_limites;
};

} // namespace

namespace exportacao {

void escreverCSV(const PedidoCSV &pedido, const std::function<void()> &passar) {
    EscritorCSV escritor(pedido.caminho);
    const auto linhas = std::make_unique<Linhas>(escritor);
    const QString sql = u"SELECT Data, Sensor, NomeSensor, "_s + pedido.tabela.valor + u", Observacoes FROM " +
                        pedido.tabela.nome + u" WHERE Data BETWEEN ? AND ? AND Sensor = ? ORDER BY Data";
    for (const QString &sensor : pedido.sensores) {
        Recordset rs = cnBD().consultar(sql, {pedido.intervalo.inicio, pedido.intervalo.fim, sensor});
        while (rs.avancar()) {
            linhas->escrever(rs);
            passar();
        }
    }
    escritor.terminar();
}

} // namespace exportacao
