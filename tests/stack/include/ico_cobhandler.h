/* Test stand-in: generated sources include this header and use nothing of it. */
