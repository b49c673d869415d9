#include "simulator/botao/gaveta.h"

#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "platform/onewire/crc.h"
#include "platform/onewire/pesquisaRom.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <cmath>
#include <numbers>

namespace simulador {

namespace {

constexpr QStringView extensao = u".botao";
constexpr QStringView ficheiroLeitor = u"leitor";

bool gravar(const QString &caminho, const QByteArray &bytes) {
    FicheiroInteiro ficheiro(caminho);
    return ficheiro.abrir() && ficheiro.write(bytes) == bytes.size() && ficheiro.concluir();
}

} // namespace

qint64 milissegundosAgora() {
    return QDateTime::currentMSecsSinceEpoch();
}

double Ambiencia::em(qint64 segundos) const {
    const double hora = double(segundos % 86400) / 3600.0;
    quint64 acaso = quint64(segundos / 60) * 0x9E3779B97F4A7C15ULL;
    acaso ^= acaso >> 29;
    const double sopro = double(acaso * 0xBF58476D1CE4E5B9ULL >> 40) / double(1 << 24) * 2.0 - 1.0;
    return media + amplitude * std::cos((hora - horaMaxima) / 12.0 * std::numbers::pi) + ruido * sopro;
}

onewire::Rom fazerRom(quint8 familia, quint64 serie, int gama) {
    onewire::Rom rom{};
    rom[0] = familia;
    const quint64 numero = (serie & 0xFFFFFFFFFULL) | quint64(gama & 0xFFF) << 36;
    for (size_t i = 0; i < 6; ++i)
        rom[i + 1] = quint8(numero >> (8 * i));
    rom[7] = onewire::crc8(std::span(rom).first(7));
    return rom;
}

onewire::Rom romDeTexto(const QString &texto) {
    const QByteArray bytes = QByteArray::fromHex(texto.toLatin1());
    onewire::Rom rom{};
    if (bytes.size() == 8)
        std::copy(bytes.begin(), bytes.end(), rom.begin());
    return rom;
}

QString textoDoRom(const onewire::Rom &rom) {
    const QByteArray bytes(reinterpret_cast<const char *>(rom.data()), 8);
    return QString::fromLatin1(bytes.toHex().toUpper());
}

std::unique_ptr<Botao> Botao::abrir(const QString &caminho) {
    QFile ficheiro(caminho);
    if (!ficheiro.open(QIODevice::ReadOnly))
        return nullptr;
    const QJsonObject o = QJsonDocument::fromJson(ficheiro.readAll()).object();
    const onewire::Rom rom = romDeTexto(o.value(u"rom").toString());
    if (!onewire::romValido(rom))
        return nullptr;
    auto botao = std::make_unique<Botao>(caminho, rom);
    if (botao->temChip() && !botao->chip.repor(o.value(u"chip").toObject()))
        return nullptr;
    const QJsonObject t = o.value(u"temperatura").toObject();
    Ambiencia &a = botao->ambiencia;
    a.media = t.value(u"media").toDouble(a.media);
    a.amplitude = t.value(u"amplitude").toDouble(a.amplitude);
    a.horaMaxima = t.value(u"horaMaxima").toInt(a.horaMaxima);
    a.ruido = t.value(u"ruido").toDouble(a.ruido);
    botao->aceleracao = std::clamp(o.value(u"aceleracao").toDouble(1.0), 0.0, 1e6);
    botao->instante = qint64(o.value(u"instante").toDouble());
    return botao;
}

bool Botao::guardar() {
    const QJsonObject t{{u"media"_s, ambiencia.media},
                        {u"amplitude"_s, ambiencia.amplitude},
                        {u"horaMaxima"_s, ambiencia.horaMaxima},
                        {u"ruido"_s, ambiencia.ruido}};
    QJsonObject o{{u"rom"_s, textoDoRom(chip.rom())}, {u"aceleracao"_s, aceleracao}, {u"instante"_s, double(instante)}};
    o.insert(u"temperatura"_s, t);
    if (temChip())
        o.insert(u"chip"_s, chip.guardar());
    const bool guardado = gravar(m_caminho, QJsonDocument(o).toJson());
    chip.sujo = !guardado;
    return guardado;
}

void Botao::actualizar(qint64 agora, const ChipDS1921::Temperatura &temperatura) {
    chip.temperatura = temperatura ? temperatura : [a = ambiencia](qint64 s) { return a.em(s); };
    if (agora > instante && temChip())
        chip.andar(qint64(double(agora - instante) * aceleracao));
    instante = std::max(agora, instante);
}

QString Botao::nome() const {
    return QFileInfo(m_caminho).completeBaseName();
}

bool Gaveta::e(const QString &pasta) {
    const QFileInfo info(pasta);
    return info.isDir() && (QFileInfo::exists(pasta + u'/' + ficheiroLeitor) || !Gaveta(pasta).nomes().isEmpty());
}

QStringList Gaveta::nomes() const {
    QStringList nomes;
    for (const QFileInfo &f : QDir(m_pasta).entryInfoList({u"*"_s + extensao}, QDir::Files, QDir::Name))
        nomes.append(f.completeBaseName());
    return nomes;
}

QStringList Gaveta::noLeitor() const {
    QFile ficheiro(m_pasta + u'/' + ficheiroLeitor);
    if (!ficheiro.open(QIODevice::ReadOnly))
        return {};
    QStringList nomes;
    for (const QString &linha : QString::fromUtf8(ficheiro.readAll()).split(u'\n'))
        if (const QString nome = linha.trimmed(); !nome.isEmpty())
            nomes.append(nome);
    return nomes;
}

bool Gaveta::por(const QStringList &nomes) const {
    return gravar(m_pasta + u'/' + ficheiroLeitor, nomes.join(u'\n').toUtf8() + '\n');
}

bool Gaveta::trocar(const QStringList &nomes) const {
    QStringList todos = nomes;
    for (const QString &nome : noLeitor())
        if (const auto um = botao(nome); um && !um->temChip() && !todos.contains(nome))
            todos.append(nome);
    return por(todos);
}

std::unique_ptr<Botao> Gaveta::botao(const QString &nome) const {
    return nome.contains(u'/') ? nullptr : Botao::abrir(m_pasta + u'/' + nome + extensao);
}

void Gaveta::acelerar(double fator, qint64 agora) const {
    for (const QString &nome : nomes()) {
        const auto um = botao(nome);
        if (!um)
            continue;
        um->actualizar(agora);
        um->aceleracao = fator;
        um->guardar();
    }
}

std::unique_ptr<Botao> Gaveta::criar(const QString &nome, const onewire::Rom &rom, const QDateTime &relogio,
                                     qint64 agora) const {
    QDir().mkpath(m_pasta);
    auto botao = std::make_unique<Botao>(m_pasta + u'/' + nome + extensao, rom);
    botao->chip.acertar(relogio);
    botao->instante = agora;
    return botao->guardar() ? std::move(botao) : nullptr;
}

} // namespace simulador
