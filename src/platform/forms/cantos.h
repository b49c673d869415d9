#pragma once

class QWidget;

// Gives a borderless window of fixed size round corners, also where no compositor would let them show through.
namespace cantos {

constexpr int raio = 16;
void arredondar(QWidget *janela);

} // namespace cantos
