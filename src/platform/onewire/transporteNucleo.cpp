#include "platform/onewire/transporteNucleo.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/crc.h"
#include "platform/onewire/pesquisaRom.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace onewire {

namespace {

constexpr quint8 escolherRom = 0x55;
constexpr int esperaDaProcura = 2000;
constexpr qsizetype escolha = 9; // the command and the number

} // namespace

std::optional<Rom> romDoNome(const QString &nome) {
    if (nome.size() != 15 || nome.at(2) != u'-')
        return std::nullopt;
    bool familiaLida = false, numeroLido = false;
    const uint familia = nome.left(2).toUInt(&familiaLida, 16);
    const quint64 numero = nome.mid(3).toULongLong(&numeroLido, 16);
    if (!familiaLida || !numeroLido || familia == 0)
        return std::nullopt;
    Rom rom{};
    rom[0] = quint8(familia);
    for (size_t i = 0; i < 6; ++i)
        rom[i + 1] = quint8(numero >> (8 * i));
    rom[7] = crc8(std::span(rom).first(7));
    return rom;
}

QString nomeDoRom(const Rom &rom) {
    quint64 numero = 0;
    for (size_t i = 6; i > 0; --i)
        numero = numero << 8 | rom[i];
    return u"%1-%2"_s.arg(uint(rom[0]), 2, 16, QChar(u'0')).arg(numero, 12, 16, QChar(u'0'));
}

std::unique_ptr<TransporteNucleo> TransporteNucleo::abrir(const QString &pasta) {
    if (!QFileInfo::exists(pasta + u"/w1_master_slaves"_s))
        return nullptr;
    std::unique_ptr<TransporteNucleo> t(new TransporteNucleo(pasta));
    try {
        t->escrever(u"w1_master_search"_s, "0"); // no searches of its own meanwhile
    } catch (const Falha &) {
        return nullptr; // no rights to it
    }
    return t;
}

TransporteNucleo::~TransporteNucleo() {
    fechar();
}

void TransporteNucleo::fechar() {
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

bool TransporteNucleo::valido() {
    return QFileInfo::exists(m_pasta + u"/w1_master_slaves"_s);
}

QByteArray TransporteNucleo::ler(const QString &nome) const {
    QFile ficheiro(m_pasta + u'/' + nome);
    if (!ficheiro.open(QIODevice::ReadOnly))
        throw Falha(erros::falhaDoFicheiro, ficheiro.errorString());
    return ficheiro.readAll();
}

void TransporteNucleo::escrever(const QString &nome, const QByteArray &bytes) const {
    QFile ficheiro(m_pasta + u'/' + nome);
    if (!ficheiro.open(QIODevice::WriteOnly | QIODevice::Unbuffered | QIODevice::ExistingOnly) ||
        ficheiro.write(bytes) != bytes.size())
        throw Falha(erros::falhaDoFicheiro, ficheiro.errorString());
}

std::vector<Rom> TransporteNucleo::dispositivos() const {
    std::vector<Rom> lista;
    for (const QByteArray &linha : ler(u"w1_master_slaves"_s).split('\n'))
        if (const auto rom = romDoNome(QString::fromLatin1(linha.trimmed())))
            lista.push_back(*rom);
    std::sort(lista.begin(), lista.end(), antes);
    return lista;
}

bool TransporteNucleo::reset() {
    fechar();
    passar();
    return !dispositivos().empty();
}

QByteArray TransporteNucleo::bloco(const QByteArray &enviar) {
    passar();
    if (enviar.size() < escolha || quint8(enviar.at(0)) != escolherRom)
        throw Falha(erros::chamadaInvalida, u"Por este adaptador só se fala com um dispositivo escolhido."_s);
    Rom rom;
    std::copy_n(enviar.begin() + 1, 8, rom.begin());
    fechar();
    const QByteArray nada(enviar.size(), char(0xFF));
    const QByteArray caminho = QFile::encodeName(m_pasta + u'/' + nomeDoRom(rom) + u"/rw"_s);
    m_fd = ::open(caminho.constData(), O_RDWR | O_CLOEXEC);
    if (m_fd < 0) {
        if (!valido())
            throw Falha(erros::falhaDoFicheiro, modTraducoes::texto(u"KelvarkAUX"_s, u"AdaptadorMudo"_s,
                                                                    u"O adaptador 1-Wire deixou de responder."_s));
        return nada; // taken off
    }
    // The ones at the end are read: on the wire that is the same as sending them.
    qsizetype fim = enviar.size();
    while (fim > escolha && quint8(enviar.at(fim - 1)) == 0xFF)
        --fim;
    const qsizetype dados = fim - escolha;
    if (dados > 0 && ::write(m_fd, enviar.constData() + escolha, size_t(dados)) != dados)
        return nada;
    QByteArray visto = enviar;
    for (qsizetype lido = fim; lido < visto.size();) {
        const auto n = ::read(m_fd, visto.data() + lido, size_t(visto.size() - lido));
        if (n <= 0)
            break;
        lido += n;
    }
    return visto;
}

std::optional<Rom> TransporteNucleo::procurar(quint8 familia, bool primeira) {
    fechar();
    if (primeira) {
        escrever(u"w1_master_search"_s, "1");
        esperarAte(esperaDaProcura, [&] { return ler(u"w1_master_search"_s).trimmed() == "0"; });
        m_achados = dispositivos();
        m_proximo = 0;
        if (familia)
            std::erase_if(m_achados, [&](const Rom &rom) { return rom[0] != familia; });
    }
    if (m_proximo >= m_achados.size())
        return std::nullopt;
    return m_achados[m_proximo++];
}

} // namespace onewire
