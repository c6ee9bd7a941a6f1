// Arrays of arrays: products, determinants, transposition in place.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

enum { N = 5 };
typedef int32_t Matrix[N][N];

static void multiply(Matrix result, Matrix a, Matrix b) {
  Matrix product;
  memset(product, 0, sizeof product);
  for (int i = 0; i < N; i++)
    for (int j = 0; j < N; j++)
      for (int k = 0; k < N; k++)
        product[i][j] += a[i][k] * b[k][j];
  memcpy(result, product, sizeof product);
}

static double determinant(double m[N][N]) {
  double result = 1;
  for (int column = 0; column < N; column++) {
    int pivot = column;
    while (pivot < N && m[pivot][column] == 0)
      pivot++;
    if (pivot == N)
      return 0;
    if (pivot != column) {
      result = -result;
      for (int k = 0; k < N; k++) {
        const double kept = m[pivot][k];
        m[pivot][k] = m[column][k];
        m[column][k] = kept;
      }
    }
    result *= m[column][column];
    for (int row = column + 1; row < N; row++) {
      const double factor = m[row][column] / m[column][column];
      for (int k = column; k < N; k++)
        m[row][k] -= factor * m[column][k];
    }
  }
  return result;
}

int main(void) {
  Matrix a, b;
  double real[N][N];
  for (int i = 0; i < N; i++)
    for (int j = 0; j < N; j++) {
      a[i][j] = (i * 7 + j * 3) % 11 - 5;
      b[i][j] = i == j ? 1 : 0;
      real[i][j] = a[i][j];
    }
  for (int i = 0; i < 8; i++)
    multiply(b, b, a);
  for (int i = 0; i < N; i++) {
    for (int j = 0; j < N; j++)
      printf("%" PRId32 " ", b[i][j]);
    printf("\n");
  }
  real[0][0] += 0.5;
  real[3][2] += 2;
  printf("%.9g\n", determinant(real));
  return 0;
}
