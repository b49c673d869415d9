#include "platform/unit/linhas.h"

#include <QIODevice>

namespace {
constexpr qsizetype tamanhoDoBloco = 1024 * 1024;
}

void Linhas::limpar() {
    *this = Linhas();
}

void Linhas::juntar(QByteArrayView linha) {
    const qsizetype preciso = linha.size() + 1;
    if (m_blocos.empty() || m_blocos.back().capacity() - m_blocos.back().size() < preciso) {
        m_blocos.emplace_back();
        // A log of a few lines shall not cost a whole block.
        m_blocos.back().reserve(std::max(preciso, m_blocos.size() == 1 ? tamanhoDoBloco / 64 : tamanhoDoBloco));
    }
    m_blocos.back().append(linha).append('\n');
    ++m_quantas;
    m_bytes += preciso;
}

bool Linhas::proxima(QByteArrayView &linha) {
    while (m_bloco < m_blocos.size()) {
        const QByteArray &bloco = m_blocos[m_bloco];
        while (m_posicao < bloco.size()) {
            const qsizetype fim = bloco.indexOf('\n', m_posicao);
            linha = QByteArrayView(bloco).sliced(m_posicao, fim - m_posicao);
            m_posicao = fim + 1;
            if (!linha.isEmpty())
                return true;
        }
        ++m_bloco;
        m_posicao = 0;
    }
    return false;
}

bool Linhas::gravar(QIODevice &destino) const {
    for (const QByteArray &bloco : m_blocos) {
        if (destino.write(bloco) != bloco.size())
            return false;
    }
    return true;
}
