#pragma once

// The drawings lie in a static library, whose resources the linker drops unless they are asked for. May be repeated.
void juntarDesenhos();
