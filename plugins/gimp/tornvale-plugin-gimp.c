/* The plug-in that lets GIMP 2.10 use Tornvale Art as a filter (Filters > Artistic > Tornvale
 * Art...). It writes the active layer (8- or 16-bit, grey or RGB, with its alpha) and the
 * selection into the hand-over files in the home folder, starts the program, waits for it, and
 * reads the result back into the layer as one undo step.
 *
 * An interactive run opens the program's window on the picture; "Apply to Photo" there hands the
 * result back. A non-interactive run (scripts, gimp -i -b) passes its settings, "KEY=VALUE" pairs
 * separated by spaces, through the scripted-run file, and the program renders without a window.
 *
 * The picture file's layout is the program's: a title line, then 32-bit little-endian fields and
 * blocks (see the program's hand-over reader). Sixteen-bit samples use 32768 as white there, so
 * GIMP's 0..65535 samples are rescaled on the way out and back; a sample that comes back as it
 * went keeps its exact original value, so unselected pixels lose no precision.
 *
 * The executable's name must begin with "tornvale-plugin": that is how the program recognises the
 * process that started it as a host. */

#include <libgimp/gimp.h>

#include <glib/gstdio.h>

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define PROCEDURE_NAME "plug-in-tornvale-art"
#ifndef TORNVALE_PROGRAM
#define TORNVALE_PROGRAM "tornvale"
#endif

enum
{
  MODE_GREY8 = 1,
  MODE_RGB8 = 3,
  MODE_GREY16 = 10,
  MODE_RGB16 = 11
};

/* What was sent, kept to put the result back where it belongs. */
typedef struct
{
  gint x, y, width, height; /* in the drawable */
  gint planes, bytes, mode;
  gint row_bytes;
  const Babl *format;
  guchar *pixels; /* as GIMP gave them, in the format above */
  guchar *mask;   /* NULL without a selection */
} Picture;

static void query (void);
static void run (const gchar *name, gint nparams, const GimpParam *param, gint *nreturn_vals, GimpParam **return_vals);

const GimpPlugInInfo PLUG_IN_INFO = { NULL, NULL, query, run };

MAIN ()

static void
query (void)
{
  static const GimpParamDef args[] = {
    { GIMP_PDB_INT32, "run-mode", "The run mode { RUN-INTERACTIVE (0), RUN-NONINTERACTIVE (1) }" },
    { GIMP_PDB_IMAGE, "image", "Input image" },
    { GIMP_PDB_DRAWABLE, "drawable", "Input drawable" },
    { GIMP_PDB_STRING, "settings", "Non-interactive runs: effect settings as KEY=VALUE pairs separated by spaces "
                                   "(strokeLength=0.8 contrast=0.6); empty for the defaults" },
  };
  gimp_install_procedure (PROCEDURE_NAME, "Turn the layer into abstract line art",
                          "Opens the layer (or the selected part of it) in Tornvale Art and takes the result back.",
                          "Tornvale Art developers", "Tornvale Art developers", "2026", "_Tornvale Art...",
                          "RGB*, GRAY*", GIMP_PLUGIN, G_N_ELEMENTS (args), 0, args, NULL);
  gimp_plugin_menu_register (PROCEDURE_NAME, "<Image>/Filters/Artistic");
}

static gchar *
handover_path (const gchar *name)
{
  return g_build_filename (g_get_home_dir (), name, NULL);
}

static void
put32 (GString *out, gint32 value)
{
  guint32 v = (guint32) value;
  guchar b[4] = { v & 0xff, (v >> 8) & 0xff, (v >> 16) & 0xff, (v >> 24) & 0xff };
  g_string_append_len (out, (const gchar *) b, 4);
}

static gboolean
get32 (const guchar **p, const guchar *end, gint32 *value)
{
  if (end - *p < 4)
    return FALSE;
  *value = (gint32) ((guint32) (*p)[0] | ((guint32) (*p)[1] << 8) | ((guint32) (*p)[2] << 16) | ((guint32) (*p)[3] << 24));
  *p += 4;
  return TRUE;
}

static gboolean
skip_block (const guchar **p, const guchar *end)
{
  gint32 size;
  if (!get32 (p, end, &size) || size < 0 || end - *p < size)
    return FALSE;
  *p += size;
  return TRUE;
}

static gint
to_host16 (gint v)
{
  return (v * 32768 + 32767) / 65535;
}

static gint
from_host16 (gint v)
{
  return MIN (65535, (v * 65535 + 16384) / 32768);
}

static gboolean
read_picture (gint32 image, gint32 drawable, Picture *pic)
{
  GeglBuffer *buffer;
  gboolean grey = gimp_drawable_is_gray (drawable);
  gboolean alpha = gimp_drawable_has_alpha (drawable);
  GimpPrecision precision = gimp_image_get_precision (image);

  if (!gimp_drawable_mask_intersect (drawable, &pic->x, &pic->y, &pic->width, &pic->height))
    return FALSE;
  /* Anything deeper than 8 bits goes as 16 bits, the deepest the program takes. */
  pic->bytes = (precision == GIMP_PRECISION_U8_LINEAR || precision == GIMP_PRECISION_U8_GAMMA) ? 1 : 2;
  pic->planes = (grey ? 1 : 3) + (alpha ? 1 : 0);
  pic->mode = grey ? (pic->bytes == 1 ? MODE_GREY8 : MODE_GREY16) : (pic->bytes == 1 ? MODE_RGB8 : MODE_RGB16);
  pic->format = babl_format (grey ? (alpha ? (pic->bytes == 1 ? "Y'A u8" : "Y'A u16") : (pic->bytes == 1 ? "Y' u8" : "Y' u16"))
                                  : (alpha ? (pic->bytes == 1 ? "R'G'B'A u8" : "R'G'B'A u16")
                                           : (pic->bytes == 1 ? "R'G'B' u8" : "R'G'B' u16")));
  pic->row_bytes = pic->width * pic->planes * pic->bytes;
  pic->pixels = g_malloc ((gsize) pic->row_bytes * pic->height);
  buffer = gimp_drawable_get_buffer (drawable);
  gegl_buffer_get (buffer, GEGL_RECTANGLE (pic->x, pic->y, pic->width, pic->height), 1.0, pic->format, pic->pixels,
                   GEGL_AUTO_ROWSTRIDE, GEGL_ABYSS_NONE);
  g_object_unref (buffer);

  pic->mask = NULL;
  if (!gimp_selection_is_empty (image))
    {
      gint ox, oy;
      GeglBuffer *selection = gimp_drawable_get_buffer (gimp_image_get_selection (image));
      gimp_drawable_offsets (drawable, &ox, &oy);
      pic->mask = g_malloc ((gsize) pic->width * pic->height);
      gegl_buffer_get (selection, GEGL_RECTANGLE (ox + pic->x, oy + pic->y, pic->width, pic->height), 1.0,
                       babl_format ("Y u8"), pic->mask, GEGL_AUTO_ROWSTRIDE, GEGL_ABYSS_NONE);
      g_object_unref (selection);
    }
  return TRUE;
}

static gboolean
write_picture (gint32 image, gint32 drawable, const Picture *pic, GError **error)
{
  GString *out = g_string_new (NULL);
  gchar *title = gimp_image_get_filename (image);
  gchar *path = handover_path (".OmbrikImg.dat");
  gint ox, oy, i;
  gboolean ok;

  if (title == NULL)
    title = gimp_image_get_name (image);
  g_string_append (out, title != NULL ? title : "Untitled");
  g_string_append_c (out, '\n');
  put32 (out, 0); /* no parameter block */
  gimp_drawable_offsets (drawable, &ox, &oy);
  put32 (out, pic->planes - 1); /* hiPlane, loPlane */
  put32 (out, 0);
  put32 (out, ox + pic->x);
  put32 (out, oy + pic->y);
  put32 (out, ox + pic->x + pic->width);
  put32 (out, oy + pic->y + pic->height);
  put32 (out, pic->mode);
  put32 (out, pic->row_bytes);
  put32 (out, 0); /* planeFlag */
  put32 (out, 0); /* the whole layer */
  put32 (out, 0);
  put32 (out, gimp_drawable_width (drawable));
  put32 (out, gimp_drawable_height (drawable));
  put32 (out, pic->mask != NULL ? pic->width : 0);
  put32 (out, 0); /* no profile: the program works in the picture's own values */
  put32 (out, pic->row_bytes * pic->height);
  if (pic->bytes == 1)
    g_string_append_len (out, (const gchar *) pic->pixels, (gssize) pic->row_bytes * pic->height);
  else
    for (i = 0; i < pic->row_bytes * pic->height; i += 2)
      {
        gint v = to_host16 (((const guint16 *) pic->pixels)[i / 2]);
        g_string_append_c (out, (gchar) (v & 0xff));
        g_string_append_c (out, (gchar) (v >> 8));
      }
  put32 (out, pic->mask != NULL ? pic->width * pic->height : 0);
  if (pic->mask != NULL)
    g_string_append_len (out, (const gchar *) pic->mask, (gssize) pic->width * pic->height);

  ok = g_file_set_contents (path, out->str, (gssize) out->len, error);
  g_string_free (out, TRUE);
  g_free (path);
  g_free (title);
  return ok;
}

/* The scripted-run file: the program's property set in XML form, with the effect's settings as
 * the XML text of an inner set. */
static gboolean
write_settings (const gchar *settings, GError **error)
{
  GString *inner = g_string_new ("<plist><dict>");
  GString *outer = g_string_new ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist><dict>"
                                 "<key>EffectName</key><string>Tornvale</string><key>EffectDictionary</key><string>");
  gchar **pairs = g_strsplit_set (settings != NULL ? settings : "", " \t\n,;", -1);
  gchar *path = handover_path (".OmbrikActionData.dat");
  gchar *escaped;
  gboolean ok;
  gint i;

  for (i = 0; pairs[i] != NULL; i++)
    {
      gchar *equals = strchr (pairs[i], '=');
      gchar *key, *value;
      if (equals == NULL)
        continue;
      *equals = '\0';
      key = g_markup_escape_text (pairs[i], -1);
      value = g_markup_escape_text (equals + 1, -1);
      g_string_append_printf (inner, "<key>%s</key><string>%s</string>", key, value);
      g_free (key);
      g_free (value);
    }
  g_string_append (inner, "</dict></plist>");
  escaped = g_markup_escape_text (inner->str, -1);
  g_string_append (outer, escaped);
  g_string_append (outer, "</string></dict></plist>\n");
  ok = g_file_set_contents (path, outer->str, (gssize) outer->len, error);

  g_free (escaped);
  g_free (path);
  g_strfreev (pairs);
  g_string_free (inner, TRUE);
  g_string_free (outer, TRUE);
  return ok;
}

static const gchar *
program_path (void)
{
  const gchar *chosen = g_getenv ("TORNVALE_PROGRAM");
  return chosen != NULL && *chosen != '\0' ? chosen : TORNVALE_PROGRAM;
}

/* Reads the program's result and checks it is the picture that was sent, in the same layout. */
static guchar *
read_result (const Picture *pic, GError **error)
{
  gchar *path = handover_path (".OmbrikImg.dat");
  gchar *contents = NULL;
  gsize length = 0;
  const guchar *p, *end;
  gint32 f[15], size;
  guchar *pixels = NULL;
  gint i;

  if (!g_file_get_contents (path, &contents, &length, error))
    {
      g_free (path);
      return NULL;
    }
  g_free (path);
  p = (const guchar *) contents;
  end = p + length;
  p = memchr (p, '\n', length);
  if (p != NULL)
    p++;
  if (p == NULL || !skip_block (&p, end))
    goto bad;
  for (i = 0; i < 14; i++)
    if (!get32 (&p, end, &f[i]))
      goto bad;
  if (!skip_block (&p, end) || !get32 (&p, end, &size))
    goto bad;
  /* f: hiPlane loPlane left top right bottom mode rowBytes ... */
  if (f[0] - f[1] + 1 != pic->planes || f[4] - f[2] != pic->width || f[5] - f[3] != pic->height || f[6] != pic->mode
      || f[7] != pic->row_bytes || size != pic->row_bytes * pic->height || end - p < size)
    goto bad;
  pixels = g_memdup2 (p, (gsize) size);
  g_free (contents);
  return pixels;

bad:
  g_set_error (error, G_FILE_ERROR, G_FILE_ERROR_INVAL, "the result from Tornvale Art does not match the picture sent");
  g_free (contents);
  return NULL;
}

/* The result into the layer as one undo step. GIMP would lay the shadow buffer over the layer
 * through the selection once more; the program has already done that (with the soft edges of the
 * selection), so for the merge the selection becomes the hard rectangle that was sent, and is put
 * back inside the same undo group. */
static void
store_result (gint32 image, gint32 drawable, const Picture *pic, guchar *result)
{
  GeglBuffer *shadow;
  gint32 saved = -1;
  gint ox, oy, i;

  if (pic->bytes == 2)
    {
      guint16 *out = (guint16 *) result;
      const guint16 *sent = (const guint16 *) pic->pixels;
      for (i = 0; i < pic->row_bytes * pic->height / 2; i++)
        {
          gint v = result[2 * i] | (result[2 * i + 1] << 8);
          out[i] = v == to_host16 (sent[i]) ? sent[i] : (guint16) from_host16 (v);
        }
    }
  shadow = gimp_drawable_get_shadow_buffer (drawable);
  gegl_buffer_set (shadow, GEGL_RECTANGLE (pic->x, pic->y, pic->width, pic->height), 0, pic->format, result,
                   GEGL_AUTO_ROWSTRIDE);
  gegl_buffer_flush (shadow);
  g_object_unref (shadow);

  gimp_image_undo_group_start (image);
  if (pic->mask != NULL)
    {
      saved = gimp_selection_save (image);
      gimp_drawable_offsets (drawable, &ox, &oy);
      gimp_context_push ();
      gimp_context_set_feather (FALSE);
      gimp_context_set_antialias (FALSE);
      gimp_image_select_rectangle (image, GIMP_CHANNEL_OP_REPLACE, ox + pic->x, oy + pic->y, pic->width, pic->height);
      gimp_context_pop ();
    }
  gimp_drawable_merge_shadow (drawable, TRUE);
  if (saved != -1)
    {
      gimp_image_select_item (image, GIMP_CHANNEL_OP_REPLACE, saved);
      gimp_image_remove_channel (image, saved);
    }
  gimp_image_undo_group_end (image);
  gimp_drawable_update (drawable, pic->x, pic->y, pic->width, pic->height);
}

static GimpPDBStatusType
hand_over (gint32 image, gint32 drawable, GimpRunMode mode, const gchar *settings, GError **error)
{
  Picture pic;
  gchar *flag = handover_path (".OmbrikFlag.dat");
  gchar *data = handover_path (".OmbrikData.dat");
  gchar *action = handover_path (".OmbrikActionData.dat");
  gchar *flag_text = NULL;
  gchar *argv[] = { (gchar *) program_path (), NULL };
  gint status = 0;
  GimpPDBStatusType result = GIMP_PDB_EXECUTION_ERROR;
  guchar *pixels;

  memset (&pic, 0, sizeof pic);
  if (!read_picture (image, drawable, &pic))
    {
      result = GIMP_PDB_SUCCESS; /* the selection misses the layer: nothing to do */
      goto done;
    }
  g_unlink (action);
  if (!g_file_set_contents (flag, "", 0, error) || !g_file_set_contents (data, "", 0, error)
      || !write_picture (image, drawable, &pic, error)
      || (mode == GIMP_RUN_NONINTERACTIVE && !write_settings (settings, error)))
    goto done;

  gimp_progress_init ("Tornvale Art");
  if (!g_spawn_sync (NULL, argv, NULL, G_SPAWN_SEARCH_PATH | G_SPAWN_CHILD_INHERITS_STDIN, NULL, NULL, NULL, NULL,
                     &status, error))
    goto done;
  if (!g_spawn_check_wait_status (status, error))
    goto done;
  if (!g_file_get_contents (flag, &flag_text, NULL, NULL) || strncmp (flag_text, "applied", 7) != 0)
    {
      result = GIMP_PDB_CANCEL; /* quit without applying */
      goto done;
    }
  pixels = read_result (&pic, error);
  if (pixels == NULL)
    goto done;
  store_result (image, drawable, &pic, pixels);
  g_free (pixels);
  result = GIMP_PDB_SUCCESS;

done:
  g_free (flag_text);
  g_free (pic.pixels);
  g_free (pic.mask);
  g_free (flag);
  g_free (data);
  g_free (action);
  return result;
}

static void
run (const gchar *name, gint nparams, const GimpParam *param, gint *nreturn_vals, GimpParam **return_vals)
{
  static GimpParam values[2];
  GimpRunMode mode = (GimpRunMode) param[0].data.d_int32;
  const gchar *settings = nparams > 3 ? param[3].data.d_string : NULL;
  GError *error = NULL;

  gegl_init (NULL, NULL);
  *nreturn_vals = 1;
  *return_vals = values;
  values[0].type = GIMP_PDB_STATUS;
  values[0].data.d_status = nparams < 3 ? GIMP_PDB_CALLING_ERROR
                                        : hand_over (param[1].data.d_image, param[2].data.d_drawable, mode, settings, &error);
  if (error != NULL)
    {
      *nreturn_vals = 2;
      values[1].type = GIMP_PDB_STRING;
      values[1].data.d_string = g_strdup_printf ("Tornvale Art: %s", error->message);
      if (mode == GIMP_RUN_INTERACTIVE)
        g_message ("%s", values[1].data.d_string);
      g_error_free (error);
    }
  if (values[0].data.d_status == GIMP_PDB_SUCCESS && mode == GIMP_RUN_INTERACTIVE)
    gimp_displays_flush ();
}
