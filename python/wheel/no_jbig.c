/* The functions of JBIG-KIT that libtiff calls, without JBIG: Debian's libtiff is linked to that library, which is under
 * the GPL, and the wheel carries this in its place. A TIFF in JBIG, a format of fax machines, is refused. */

static const char kNone[] = "JBIG is not a part of this build";

void jbg_dec_init(void* state) { (void)state; }
void jbg_dec_free(void* state) { (void)state; }
int jbg_dec_in(void* state, unsigned char* data, unsigned long size, unsigned long* count) {
    (void)state, (void)data, (void)size, (void)count;
    return 64; /* JBG_EINVAL */
}
unsigned char* jbg_dec_getimage(const void* state, int plane) { return (void)state, (void)plane, (unsigned char*)0; }
unsigned long jbg_dec_getsize(const void* state) { return (void)state, 0; }
int jbg_newlen(unsigned char* data, unsigned long size) { return (void)data, (void)size, 64; }
const char* jbg_strerror(int error) { return (void)error, kNone; }

void jbg_enc_init(void* state, unsigned long width, unsigned long height, int planes, unsigned char** data,
                  void (*out)(unsigned char*, unsigned long, void*), void* file) {
    (void)state, (void)width, (void)height, (void)planes, (void)data, (void)out, (void)file;
}
void jbg_enc_out(void* state) { (void)state; }
void jbg_enc_free(void* state) { (void)state; }
