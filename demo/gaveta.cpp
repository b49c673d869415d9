#include "simulator/botao/gaveta.h"
#include "core/falha.h"
#include "core/literais.h"
#include "demo/acaso.h"
#include "demo/clima.h"
#include "demo/missoes.h"
#include "platform/onewire/memoria1921.h"

#include <QDir>
#include <QFile>

// A drawer of buttons: what is in the database not closed yet is still in one of them.
namespace demonstracao {

namespace {

using simulador::Botao;
using simulador::Gaveta;

constexpr qint64 de1900a1970 = 25568LL * 86400; // in the chip's calendar, in which 1900 is a leap year
constexpr int textoDeUmaPagina = 28;

struct Programa {
    QString nome, descricao;
    int numero, intervalo;
    double minimo, maximo, calibracao;
    qint64 inicio;
    bool continuo;
};

QDateTime relogioDe(qint64 t) {
    return QDateTime::fromSecsSinceEpoch(t, Qt::UTC);
}

// When the wall clock of this place shows it.
qint64 milissegundosDe(qint64 t) {
    const QDateTime d = relogioDe(t);
    return QDateTime(d.date(), d.time(), Qt::LocalTime).toMSecsSinceEpoch();
}

void escreverPagina(simulador::ChipDS1921 &chip, int pagina, const QByteArray &dados) {
    const auto bytes = [](const QByteArray &a) {
        return std::span(reinterpret_cast<const quint8 *>(a.constData()), size_t(a.size()));
    };
    chip.copiar(pagina * onewire::bytesDaPagina, bytes(onewire::fazerPacote(bytes(dados), pagina)));
}

// The record that travels with the button: a directory, then a chain of pages.
void escreverRegisto(Botao &botao, const Programa &p) {
    escreverPagina(botao.chip, 0, QByteArray::fromHex("aa00801f000000545445430001 0400"));
    QByteArray id = QByteArray::fromHex(simulador::textoDoRom(botao.chip.rom()).toLatin1());
    std::reverse(id.begin(), id.end());
    const QString calibracao = QString::number(p.calibracao, 'f', 1).replace(u'.', u',');
    QByteArray resto = u"%1%2\n%3\n%4%5\n%6\n"_s.arg(p.numero, 4, 10, QChar(u'0'))
                           .arg(p.descricao, p.nome, QString::fromLatin1(id.toHex().toUpper()))
                           .arg(p.intervalo)
                           .arg(calibracao)
                           .toLatin1();
    for (int pagina = 1; !resto.isEmpty(); ++pagina) {
        const bool ultima = resto.size() <= textoDeUmaPagina;
        escreverPagina(botao.chip, pagina, resto.left(textoDeUmaPagina).append(ultima ? '\0' : char(pagina + 1)));
        resto.remove(0, textoDeUmaPagina);
    }
}

// Lived through from its start to the end of the history.
void viver(Botao &botao, const Programa &p, qint64 fim, const std::function<double(qint64)> &bruta) {
    constexpr int antes = 30; // the first sample falls on the next whole minute
    botao.chip.acertar(relogioDe(p.inicio - antes));
    botao.chip.temperatura = [&](qint64 s) { return bruta(s - de1900a1970); };
    botao.chip.iniciar(p.intervalo, 0, p.continuo, p.minimo, p.maximo);
    botao.chip.andar((fim - p.inicio + antes) * 1000);
    escreverRegisto(botao, p);
}

std::unique_ptr<Botao> novo(const Gaveta &gaveta, const QString &nome, const onewire::Rom &rom, qint64 fim) {
    auto botao = gaveta.criar(nome, rom, relogioDe(fim), milissegundosDe(fim));
    if (!botao)
        throw Falha(erros::falhaDoFicheiro, u"Não é possível escrever em \"%1\"."_s.arg(gaveta.pasta()));
    return botao;
}

onewire::Rom romDoID(const QString &id) {
    onewire::Rom rom = simulador::romDeTexto(id);
    std::reverse(rom.begin(), rom.end());
    return rom;
}

} // namespace

Leitor fazerGaveta(const QString &pasta, const Clima &clima, qint64 fim) {
    const Gaveta gaveta(pasta);
    for (const QString &nome : QDir(pasta).entryList({u"*.botao"_s}, QDir::Files))
        QFile::remove(pasta + u'/' + nome);

    for (const MissaoNoBotao &m : missoesNosBotoes(clima, fim)) {
        const QString nome = m.nome.section(u' ', -1).toLower();
        const auto botao = novo(gaveta, nome, romDoID(m.id), fim);
        viver(*botao, {m.nome, m.descricao, m.numero, m.intervalo, m.minimo, m.maximo, m.calibracao, m.inicio, false},
              fim, m.bruta);
        botao->ambiencia = {.media = m.base, .amplitude = 0.9, .horaMaxima = 16, .ruido = 0.6};
        botao->guardar();
    }

    const quint64 chave = clima.chaveDe(810);
    const auto serie = [&](int n) { return misturar(chave, n) & 0xFFFFFFFFF; };
    const auto laboratorio = novo(gaveta, u"laboratorio"_s, simulador::fazerRom(0x21, serie(0), 0x4F2), fim);
    laboratorio->ambiencia = {.media = 22.0, .amplitude = 2.2, .horaMaxima = 15, .ruido = 0.25};
    viver(*laboratorio,
          {u"Registador Laboratório"_s, u"Bancada 2"_s, 1, 5, 19, 24, 0, (fim - 9 * 86400) / 60 * 60, true}, fim,
          [&](qint64 t) { return laboratorio->ambiencia.em(t); });
    laboratorio->guardar();

    const auto arca = novo(gaveta, u"arca"_s, simulador::fazerRom(0x21, serie(1), 0x3B2), fim);
    arca->ambiencia = {.media = 4.2, .amplitude = 1.1, .horaMaxima = 17, .ruido = 0.3};
    arca->guardar();
    const auto branco = novo(gaveta, u"novo"_s, simulador::fazerRom(0x21, serie(2), 0), fim);
    branco->guardar();

    const onewire::Rom numero = simulador::fazerRom(0x81, serie(3), 0);
    (void)novo(gaveta, u"adaptador"_s, numero, fim);
    if (!gaveta.por({u"adaptador"_s, u"pescado"_s}))
        throw Falha(erros::falhaDoFicheiro, u"Não é possível escrever em \"%1\"."_s.arg(pasta));
    onewire::Rom invertido = numero;
    std::reverse(invertido.begin(), invertido.end());
    return {simulador::textoDoRom(invertido), u"DS9490R"_s};
}

} // namespace demonstracao
