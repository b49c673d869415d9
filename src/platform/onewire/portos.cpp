#include "platform/onewire/portos.h"

#include "core/literais.h"
#include "core/modINI.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/transporteNucleo.h"
#include "platform/onewire/transporteSerie.h"
#include "platform/onewire/trinco.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace onewire {

namespace {

// The usual places. Lines of the machine itself come last and only under their type, since a search tries them all.
struct Lugar {
    qint16 tipo;
    qint16 primeiro, ultimo;
    QStringView prefixo;
    int base; // number in the name of the first port
};
constexpr Lugar lugares[] = {
    {5, 1, 8, u"/dev/ttyUSB", 0},
    {5, 9, 12, u"/dev/ttyS", 0},
    {5, 13, 15, u"/dev/ttyACM", 0},
    {6, 1, 15, u"/sys/bus/w1/devices/w1_bus_master", 1},
};

// An adapter and the lock on it.
class Preso : public Transporte {
public:
    Preso(std::unique_ptr<Trinco> trinco, std::unique_ptr<Transporte> dentro)
        : m_trinco(std::move(trinco)), m_dentro(std::move(dentro)) {}
    bool reset() override { return m_dentro->reset(); }
    QByteArray bloco(const QByteArray &enviar) override { return m_dentro->bloco(enviar); }
    std::optional<Rom> procurar(quint8 familia, bool primeira) override {
        return m_dentro->procurar(familia, primeira);
    }
    bool valido() override { return m_dentro->valido(); }

private:
    std::unique_ptr<Trinco> m_trinco; // let go of last
    std::unique_ptr<Transporte> m_dentro;
};

// Of a bus master of the kernel the file by which it is searched, else the path itself.
QFileInfo oQueSeAbre(const QFileInfo &info) {
    const QFileInfo procura(info.filePath() + u"/w1_master_search"_s);
    return info.isDir() && procura.exists() ? procura : info;
}

bool podeAbrir(const QFileInfo &info) {
    return ::faccessat(AT_FDCWD, QFile::encodeName(info.filePath()).constData(), R_OK | W_OK, AT_EACCESS) == 0 ||
           errno != EACCES;
}

std::unique_ptr<Transporte> abrirCaminho(const QString &caminho, bool pasta) {
    if (!pasta)
        return TransporteSerie::abrir(caminho);
    if (auto nucleo = TransporteNucleo::abrir(caminho))
        return nucleo;
    const auto &gaveta = barramento().gaveta;
    return gaveta ? gaveta(caminho) : nullptr;
}

} // namespace

QString caminhoDoPorto(qint16 porto, qint16 tipo) {
    const QString chave = u"Caminho%1.%2"_s.arg(tipo).arg(porto);
    const QString escrito = modINI::GetSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, chave).trimmed();
    if (!escrito.isEmpty())
        return escrito;
    for (const Lugar &l : lugares)
        if (l.tipo == tipo && porto >= l.primeiro && porto <= l.ultimo)
            return l.prefixo + QString::number(porto - l.primeiro + l.base);
    return {};
}

std::unique_ptr<Transporte> abrirPorto(qint16 porto, qint16 tipo) {
    return abrirNoCaminho(caminhoDoPorto(porto, tipo));
}

std::unique_ptr<Transporte> abrirNoCaminho(const QString &caminho) {
    const QFileInfo info(caminho);
    if (caminho.isEmpty() || !info.exists()) {
        anotar(caminho.isEmpty() ? Causa::SemPorto : Causa::AdaptadorFora);
        return nullptr;
    }
    if (const QFileInfo aAbrir = oQueSeAbre(info); !podeAbrir(aAbrir)) {
        barramento().motivo.grupo = aAbrir.group();
        anotar(Causa::SemPermissao);
        return nullptr;
    }
    auto trinco = std::make_unique<Trinco>(caminho);
    if (!trinco->preso()) {
        anotar(Causa::Ocupado);
        return nullptr;
    }
    auto dentro = abrirCaminho(caminho, info.isDir());
    if (!dentro && barramento().motivo.causa == Causa::Nenhuma)
        anotar(Causa::OutroEquipamento);
    return dentro ? std::make_unique<Preso>(std::move(trinco), std::move(dentro)) : nullptr;
}

} // namespace onewire
